#include "tests/support/german_locale.h"

#include <cctype>
#include <clocale>
#include <cstdlib>

GermanLocale::GermanLocale() {
    const std::string name = "german-latin1";
    const std::string made = (m_folder.Path() / name).string();
    const std::string command = "localedef -i de_DE -f ISO-8859-1 '" + made + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return;
    if (const char* before = std::getenv("LOCPATH")) m_localePathBefore = before;
    setenv("LOCPATH", m_folder.Path().c_str(), 1);
    const volatile int acute = 0xE9;  // the compiler would answer for a constant, as the C locale does
    m_active = std::setlocale(LC_ALL, name.c_str()) != nullptr && std::strtod("1,5", nullptr) == 1.5 &&
               std::toupper(acute) == 0xC9;
}

GermanLocale::~GermanLocale() {
    std::setlocale(LC_ALL, "C");
    if (m_localePathBefore)
        setenv("LOCPATH", m_localePathBefore->c_str(), 1);
    else
        unsetenv("LOCPATH");
}
