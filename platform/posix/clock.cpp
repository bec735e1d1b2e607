// File times start on 1601-01-01, the first day of a 400-year cycle: the calendar below needs no other origin.
#include "platform/clock.h"

#include <time.h>

#include <algorithm>
#include <array>

namespace platform {

namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10000;
constexpr std::uint64_t kTicksPerDay = 86400000 * kTicksPerMillisecond;

constexpr unsigned kFirstYear = 1601;
constexpr unsigned kLastYear = 30827;

constexpr std::uint64_t kDaysPerYear = 365;
constexpr std::uint64_t kDaysPer4Years = 4 * kDaysPerYear + 1;
constexpr std::uint64_t kDaysPer100Years = 25 * kDaysPer4Years - 1;
constexpr std::uint64_t kDaysPer400Years = 4 * kDaysPer100Years + 1;

// Days of the year before the first of each month, by month 1 to 12, and before the next year.
constexpr std::array<unsigned, 14> kDaysBeforeMonth = {0,   0,   31,  59,  90,  120, 151,
                                                       181, 212, 243, 273, 304, 334, 365};

bool IsLeapYear(unsigned year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

unsigned DaysBefore(unsigned month, unsigned year) {
    return kDaysBeforeMonth[month] + (month > 2 && IsLeapYear(year) ? 1 : 0);
}

unsigned DaysIn(unsigned month, unsigned year) { return DaysBefore(month + 1, year) - DaysBefore(month, year); }

bool Exists(const SYSTEMTIME& time) {
    return time.wYear >= kFirstYear && time.wYear <= kLastYear && time.wMonth >= 1 && time.wMonth <= 12 &&
           time.wDay >= 1 && time.wDay <= DaysIn(time.wMonth, time.wYear) && time.wHour <= 23 &&
           time.wMinute <= 59 && time.wSecond <= 59 && time.wMilliseconds <= 999;
}

std::uint64_t DayNumber(const SYSTEMTIME& time) {
    const std::uint64_t years = time.wYear - kFirstYear;
    return years * kDaysPerYear + years / 4 - years / 100 + years / 400 + DaysBefore(time.wMonth, time.wYear) +
           time.wDay - 1;
}

// Takes the whole years out of `days`, which becomes the day of the year, counted from 0. A cycle's last day
// falls into its last part, not into one more part: hence the limits of 3.
unsigned TakeYear(std::uint64_t& days) {
    const std::uint64_t cycles = days / kDaysPer400Years;
    days %= kDaysPer400Years;
    const std::uint64_t centuries = std::min<std::uint64_t>(days / kDaysPer100Years, 3);
    days -= centuries * kDaysPer100Years;
    const std::uint64_t leapCycles = days / kDaysPer4Years;
    days %= kDaysPer4Years;
    const std::uint64_t years = std::min<std::uint64_t>(days / kDaysPerYear, 3);
    days -= years * kDaysPerYear;
    return static_cast<unsigned>(kFirstYear + 400 * cycles + 100 * centuries + 4 * leapCycles + years);
}

void SetDate(SYSTEMTIME& time, std::uint64_t dayNumber) {
    time.wDayOfWeek = static_cast<std::uint16_t>((dayNumber + 1) % 7);  // the first day was a Monday
    std::uint64_t dayOfYear = dayNumber;
    const unsigned year = TakeYear(dayOfYear);
    unsigned month = 1;
    while (dayOfYear >= DaysBefore(month + 1, year)) ++month;
    time.wYear = static_cast<std::uint16_t>(year);
    time.wMonth = static_cast<std::uint16_t>(month);
    time.wDay = static_cast<std::uint16_t>(dayOfYear - DaysBefore(month, year) + 1);
}

void SetTimeOfDay(SYSTEMTIME& time, std::uint64_t milliseconds) {
    time.wHour = static_cast<std::uint16_t>(milliseconds / 3600000);
    time.wMinute = static_cast<std::uint16_t>(milliseconds / 60000 % 60);
    time.wSecond = static_cast<std::uint16_t>(milliseconds / 1000 % 60);
    time.wMilliseconds = static_cast<std::uint16_t>(milliseconds % 1000);
}

std::uint64_t MillisecondOfDay(const SYSTEMTIME& time) {
    return ((time.wHour * 60u + time.wMinute) * 60u + time.wSecond) * 1000u + time.wMilliseconds;
}

SYSTEMTIME CalendarRecord(const tm& parts, long nanoseconds) {
    SYSTEMTIME time{};
    time.wYear = static_cast<std::uint16_t>(parts.tm_year + 1900);
    time.wMonth = static_cast<std::uint16_t>(parts.tm_mon + 1);
    time.wDayOfWeek = static_cast<std::uint16_t>(parts.tm_wday);
    time.wDay = static_cast<std::uint16_t>(parts.tm_mday);
    time.wHour = static_cast<std::uint16_t>(parts.tm_hour);
    time.wMinute = static_cast<std::uint16_t>(parts.tm_min);
    time.wSecond = static_cast<std::uint16_t>(std::min(parts.tm_sec, 59));  // the record knows no leap second
    time.wMilliseconds = static_cast<std::uint16_t>(nanoseconds / 1000000);
    return time;
}

}  // namespace

void GetSystemTime(SYSTEMTIME* now) {
    timespec instant{};
    clock_gettime(CLOCK_REALTIME, &instant);
    tm parts{};
    gmtime_r(&instant.tv_sec, &parts);
    *now = CalendarRecord(parts, instant.tv_nsec);
}

void GetLocalTime(SYSTEMTIME* now) {
    timespec instant{};
    clock_gettime(CLOCK_REALTIME, &instant);
    tm parts{};
    tzset();  // localtime_r alone would miss a time zone that changed while the process runs
    localtime_r(&instant.tv_sec, &parts);
    *now = CalendarRecord(parts, instant.tv_nsec);
}

bool SystemTimeToFileTime(const SYSTEMTIME* calendar, FileTime* ticks) {
    if (!Exists(*calendar)) return false;
    *ticks = DayNumber(*calendar) * kTicksPerDay + MillisecondOfDay(*calendar) * kTicksPerMillisecond;
    return true;
}

bool FileTimeToSystemTime(const FileTime* ticks, SYSTEMTIME* calendar) {
    if (*ticks >> 63 != 0) return false;
    SetDate(*calendar, *ticks / kTicksPerDay);
    SetTimeOfDay(*calendar, *ticks % kTicksPerDay / kTicksPerMillisecond);
    return true;
}

}  // namespace platform
