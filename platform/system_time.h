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

// Platform calendar record; what it means is with the functions that take it (util/time.h).
struct SYSTEMTIME {
    std::uint16_t wYear;          // 1601 to 30827
    std::uint16_t wMonth;         // 1 to 12
    std::uint16_t wDayOfWeek;     // 0 = Sunday
    std::uint16_t wDay;           // 1 to 31
    std::uint16_t wHour;          // 0 to 23
    std::uint16_t wMinute;        // 0 to 59
    std::uint16_t wSecond;        // 0 to 59
    std::uint16_t wMilliseconds;  // 0 to 999
};
#endif

static_assert(sizeof(SYSTEMTIME) == 16, "eight 16-bit fields");
