#include "tests/support/machine.h"

#include <chrono>
#include <cstdlib>

EnvironmentVariable::EnvironmentVariable(const char* name, const std::string& value) : m_name(name) {
    if (const char* before = std::getenv(name)) m_before = before;
    SetEnvironment(name, value);
}

EnvironmentVariable::~EnvironmentVariable() {
    if (m_before)
        SetEnvironment(m_name, *m_before);
    else
        ClearEnvironment(m_name);
}

std::time_t Now() {
    using std::chrono::system_clock;
    return system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(system_clock::now()));
}
