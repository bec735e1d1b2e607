// SYSTEMTIME, the calendar record of eight unsigned 16-bit fields. On Windows it is the system's own.
#pragma once

#if defined(_WIN32)
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <cstdint>

struct SYSTEMTIME {
    std::uint16_t wYear;
    std::uint16_t wMonth;      // 1 to 12
    std::uint16_t wDayOfWeek;  // 0 = Sunday
    std::uint16_t wDay;        // 1 to 31
    std::uint16_t wHour;
    std::uint16_t wMinute;
    std::uint16_t wSecond;
    std::uint16_t wMilliseconds;
};
#endif

static_assert(sizeof(SYSTEMTIME) == 16, "eight 16-bit fields");
