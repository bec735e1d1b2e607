// Numbers as the C library reads them, in whatever locale the process has.
#pragma once

#include <cstdlib>
#include <string>

// 0 where no number begins; some libraries then keep the sign of what is none.
inline double RealByCLibrary(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return end == text.c_str() ? 0.0 : value;
}
