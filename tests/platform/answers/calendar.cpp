// Calendar conversions over the whole range of 32-bit times, at the ends of the calendar, and of records that
// are none.
#include <cstdint>
#include <cstdio>

#include "platform/clock.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

constexpr std::int64_t kTicksTo1970 = 116444736000000000;

std::string Text(const SYSTEMTIME& time) {
    char text[80];
    std::snprintf(text, sizeof text, "%u-%u-%u (%u) %u:%u:%u.%u", time.wYear, time.wMonth, time.wDay,
                  time.wDayOfWeek, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    return text;
}

void ToRecord(std::uint64_t ticks) {
    SYSTEMTIME record{7, 7, 7, 7, 7, 7, 7, 7};
    const platform::FileTime time = ticks;
    const bool isDone = platform::FileTimeToSystemTime(&time, &record);
    Print("record of " + std::to_string(ticks), YesNo(isDone) + " " + Text(record));
}

void ToTicks(const SYSTEMTIME& record) {
    platform::FileTime ticks = 77;
    const bool isDone = platform::SystemTimeToFileTime(&record, &ticks);
    Print("ticks of " + Text(record), YesNo(isDone) + " " + std::to_string(ticks));
}

using Field = decltype(SYSTEMTIME::wYear);

Field F(int value) { return static_cast<Field>(value); }

void DaysAndMonths() {
    for (const int year :
         {0, 1600, 1601, 1700, 1899, 1900, 1970, 2000, 2023, 2024, 2100, 9999, 30827, 30828, 65535})
        for (const int month : {0, 1, 2, 3, 4, 11, 12, 13, 65535})
            for (const int day : {0, 1, 28, 29, 30, 31, 32, 65535})
                ToTicks({F(year), F(month), F(day % 9), F(day), 12, 34, 56, 789});
}

void TimesOfDay() {
    for (const int hour : {0, 23, 24, 65535})
        for (const int minute : {0, 59, 60, 65535})
            for (const int second : {0, 59, 60, 65535})
                for (const int millisecond : {0, 999, 1000, 65535})
                    ToTicks({2001, 9, 0, 9, F(hour), F(minute), F(second), F(millisecond)});
}

}  // namespace

void Calendar() {
    constexpr std::int64_t kStep = 3'456'789;  // [s] not a multiple of any calendar unit
    for (std::int64_t second = INT32_MIN; second <= INT32_MAX; second += kStep)
        ToRecord(static_cast<std::uint64_t>(kTicksTo1970 + second * 10000000 + (second & 0xFFFFF)));
    for (const std::int64_t second :
         {std::int64_t{INT32_MIN}, std::int64_t{-1}, std::int64_t{0}, std::int64_t{INT32_MAX}})
        for (const int ticks : {-10001, -10000, -1, 0, 1, 9999, 10000})
            ToRecord(static_cast<std::uint64_t>(kTicksTo1970 + second * 10000000 + ticks));
    for (std::uint64_t ticks = 1; ticks != 0; ticks <<= 1) {
        ToRecord(ticks - 1);
        ToRecord(ticks);
    }
    DaysAndMonths();
    TimesOfDay();
}

}  // namespace answers
