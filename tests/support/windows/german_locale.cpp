#include "tests/support/german_locale.h"

#include <cctype>
#include <clocale>
#include <cstdlib>

GermanLocale::GermanLocale() {
    const volatile int acute = 0xE9;  // the compiler would answer for a constant, as the C locale does
    m_active = std::setlocale(LC_ALL, "German_Germany.1252") != nullptr && std::strtod("1,5", nullptr) == 1.5 &&
               std::toupper(acute) == 0xC9;
}

GermanLocale::~GermanLocale() { std::setlocale(LC_ALL, "C"); }
