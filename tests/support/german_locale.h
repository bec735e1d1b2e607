// A process locale that bites: a comma in real numbers, and e with acute at 0xE9 with an upper-case form.
#pragma once

#include <optional>
#include <string>

#include "tests/support/device.h"

// Makes and sets German in ISO 8859-1 for the whole process; back to "C" at the end. Where the system cannot
// make it, Active() is false and the test skips:
//     const GermanLocale german;
//     if (!german.Active()) GTEST_SKIP() << "no German locale can be made here (localedef, package locales)";
class GermanLocale {
 public:
    GermanLocale();
    ~GermanLocale();
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;
    bool Active() const { return m_active; }

 private:
    TemporaryFolder m_folder;
    std::optional<std::string> m_localePathBefore;
    bool m_active = false;
};
