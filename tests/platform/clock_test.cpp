// The clock and the calendar.
#include "platform/clock.h"

#include <time.h>

#include <cstdlib>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/machine.h"

namespace {

using platform::FileTime;
using platform::FileTimeToSystemTime;
using platform::SystemTimeToFileTime;

constexpr std::int64_t kTicksPerSecond = 10000000;
constexpr std::int64_t kTicksTo1970 = 116444736000000000;

bool operator==(const SYSTEMTIME& a, const SYSTEMTIME& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

SYSTEMTIME Record(unsigned year, unsigned month, unsigned day, unsigned hour = 0, unsigned minute = 0,
                  unsigned second = 0, unsigned millisecond = 0, unsigned dayOfWeek = 0) {
    SYSTEMTIME record{};
    record.wYear = static_cast<std::uint16_t>(year);
    record.wMonth = static_cast<std::uint16_t>(month);
    record.wDayOfWeek = static_cast<std::uint16_t>(dayOfWeek);
    record.wDay = static_cast<std::uint16_t>(day);
    record.wHour = static_cast<std::uint16_t>(hour);
    record.wMinute = static_cast<std::uint16_t>(minute);
    record.wSecond = static_cast<std::uint16_t>(second);
    record.wMilliseconds = static_cast<std::uint16_t>(millisecond);
    return record;
}

FileTime TicksOf(std::int64_t secondsSince1970) {
    return static_cast<FileTime>(secondsSince1970 * kTicksPerSecond + kTicksTo1970);
}

SYSTEMTIME AtSecond(std::int64_t secondsSince1970) {
    const FileTime ticks = TicksOf(secondsSince1970);
    SYSTEMTIME record{};
    EXPECT_TRUE(FileTimeToSystemTime(&ticks, &record));
    return record;
}

// The C library's calendar, which shares nothing with ours.
SYSTEMTIME AtSecondByLibrary(std::int64_t secondsSince1970) {
    const time_t seconds = secondsSince1970;
    const std::tm parts = UtcTime(seconds);
    return Record(static_cast<unsigned>(parts.tm_year + 1900), static_cast<unsigned>(parts.tm_mon + 1),
                  static_cast<unsigned>(parts.tm_mday), static_cast<unsigned>(parts.tm_hour),
                  static_cast<unsigned>(parts.tm_min), static_cast<unsigned>(parts.tm_sec), 0,
                  static_cast<unsigned>(parts.tm_wday));
}

void ExpectBothWays(std::int64_t seconds) {
    const SYSTEMTIME record = AtSecond(seconds);
    ASSERT_TRUE(record == AtSecondByLibrary(seconds)) << seconds;
    FileTime ticks = 0;
    ASSERT_TRUE(SystemTimeToFileTime(&record, &ticks)) << seconds;
    ASSERT_EQ(ticks, TicksOf(seconds));
}

TEST(Calendar, KnownInstants_HaveTheirDaysOfWeek) {
    EXPECT_TRUE(AtSecond(0) == Record(1970, 1, 1, 0, 0, 0, 0, 4));
    EXPECT_TRUE(AtSecond(-1) == Record(1969, 12, 31, 23, 59, 59, 0, 3));
    EXPECT_TRUE(AtSecond(0x7FFFFFFF) == Record(2038, 1, 19, 3, 14, 7, 0, 2));
    EXPECT_TRUE(AtSecond(-0x80000000LL) == Record(1901, 12, 13, 20, 45, 52, 0, 5));
    EXPECT_TRUE(AtSecond(1000000000) == Record(2001, 9, 9, 1, 46, 40, 0, 0));
    EXPECT_TRUE(AtSecond(-11644473600) == Record(1601, 1, 1, 0, 0, 0, 0, 1));
}

TEST(Calendar, EveryDayOf32Bits_AgreesWithTheCLibrary) {
    for (std::int64_t seconds = -0x80000000LL; seconds < 0x100000000LL; seconds += 86400) {
        ExpectBothWays(seconds);
        ExpectBothWays(seconds + 86399);
    }
}

TEST(Calendar, SecondsDrawnFromTheWholeRange_AgreeWithTheCLibrary) {
    constexpr unsigned kSeed = 20260727;
    std::mt19937_64 random(kSeed);
    std::uniform_int_distribution<std::int64_t> seconds(-11644473600,
                                                        910670515199);  // 1601 to the end of 30827
    for (int i = 0; i < 200000; ++i) ExpectBothWays(seconds(random));
}

TEST(Calendar, LeapDays_ExistInLeapYearsOnly) {
    FileTime ticks = 0;
    for (unsigned year : {1600u + 4, 2000u, 2024u, 2400u}) {
        const SYSTEMTIME day = Record(year, 2, 29);
        EXPECT_TRUE(SystemTimeToFileTime(&day, &ticks)) << year;
    }
    for (unsigned year : {1700u, 1900u, 2023u, 2100u}) {
        const SYSTEMTIME day = Record(year, 2, 29);
        EXPECT_FALSE(SystemTimeToFileTime(&day, &ticks)) << year;
    }
}

TEST(Calendar, DayOfWeek_IsIgnoredOnTheWayIn) {
    FileTime plain = 0, odd = 0;
    const SYSTEMTIME record = Record(2001, 9, 9), withAnyDay = Record(2001, 9, 9, 0, 0, 0, 0, 9999);
    ASSERT_TRUE(SystemTimeToFileTime(&record, &plain));
    ASSERT_TRUE(SystemTimeToFileTime(&withAnyDay, &odd));
    EXPECT_EQ(plain, odd);
}

TEST(Calendar, WhatDoesNotExist_IsRefusedAndLeavesTheResult) {
    const SYSTEMTIME impossible[] = {
        Record(1600, 12, 31),
        Record(30828, 1, 1),
        Record(0, 1, 1),
        Record(2000, 0, 1),
        Record(2000, 13, 1),
        Record(2000, 1, 0),
        Record(2000, 1, 32),
        Record(2000, 4, 31),
        Record(2001, 2, 29),
        Record(2000, 1, 1, 24),
        Record(2000, 1, 1, 0, 60),
        Record(2000, 1, 1, 0, 0, 60),
        Record(2000, 1, 1, 0, 0, 0, 1000),
        Record(2000, 65535, 1),
        Record(2000, 1, 65535),
    };
    for (const SYSTEMTIME& record : impossible) {
        FileTime ticks = 77;
        EXPECT_FALSE(SystemTimeToFileTime(&record, &ticks));
        EXPECT_EQ(ticks, 77u);
    }
}

TEST(Calendar, LimitsOfTheRange_AreInIt) {
    FileTime ticks = 77;
    const SYSTEMTIME first = Record(1601, 1, 1), last = Record(30827, 12, 31, 23, 59, 59, 999);
    EXPECT_TRUE(SystemTimeToFileTime(&first, &ticks));
    EXPECT_EQ(ticks, 0u);
    ASSERT_TRUE(SystemTimeToFileTime(&last, &ticks));
    SYSTEMTIME back{};
    ASSERT_TRUE(FileTimeToSystemTime(&ticks, &back));
    back.wDayOfWeek = 0;
    EXPECT_TRUE(back == last);
}

TEST(Calendar, Milliseconds_AreCarriedBothWays) {
    const SYSTEMTIME record = Record(1969, 12, 31, 23, 59, 58, 1);
    FileTime ticks = 0;
    ASSERT_TRUE(SystemTimeToFileTime(&record, &ticks));
    EXPECT_EQ(ticks, TicksOf(-2) + 10000);
    ticks += 9999;  // below a millisecond: dropped
    SYSTEMTIME back{};
    ASSERT_TRUE(FileTimeToSystemTime(&ticks, &back));
    EXPECT_EQ(back.wMilliseconds, 1);
    EXPECT_EQ(back.wSecond, 58);
}

TEST(Calendar, FileTimeFrom2To63On_IsRefusedAndLeavesTheRecord) {
    const FileTime last = (FileTime{1} << 63) - 1, beyond = FileTime{1} << 63, all = ~FileTime{0};
    SYSTEMTIME record = Record(1, 2, 3);
    EXPECT_FALSE(FileTimeToSystemTime(&beyond, &record));
    EXPECT_FALSE(FileTimeToSystemTime(&all, &record));
    EXPECT_TRUE(record == Record(1, 2, 3));
    EXPECT_TRUE(FileTimeToSystemTime(&last, &record));
    EXPECT_EQ(record.wYear, 30828);
}

// ---- the clock

class Clock : public ::testing::Test {
 protected:
    static std::int64_t SecondsOf(const SYSTEMTIME& record) {
        FileTime ticks = 0;
        EXPECT_TRUE(SystemTimeToFileTime(&record, &ticks));
        return (static_cast<std::int64_t>(ticks) - kTicksTo1970) / kTicksPerSecond;
    }
};

TEST_F(Clock, SystemTime_IsUtcInEveryZone) {
    const TimeZone eastern("Far-14");
    const time_t before = Now();
    SYSTEMTIME now{};
    platform::GetSystemTime(&now);
    EXPECT_GE(SecondsOf(now), before);
    EXPECT_LE(SecondsOf(now), Now());
    EXPECT_LE(now.wMilliseconds, 999);
}

TEST_F(Clock, LocalTime_FollowsTheZoneAlsoWhenItChanges) {
    if (!TimeZone::Active()) GTEST_SKIP() << "a process has no time zone of its own here";
    for (int hoursEast : {0, 5, -8}) {
        const TimeZone here(("Here" + std::to_string(-hoursEast)).c_str());
        const std::int64_t before = Now();
        SYSTEMTIME now{};
        platform::GetLocalTime(&now);
        EXPECT_GE(SecondsOf(now), before + hoursEast * 3600);
        EXPECT_LE(SecondsOf(now), std::int64_t{Now()} + hoursEast * 3600);
    }
}

TEST_F(Clock, DayOfWeek_BelongsToTheDate) {
    SYSTEMTIME now{}, sameDay{};
    platform::GetSystemTime(&now);
    FileTime ticks = 0;
    ASSERT_TRUE(SystemTimeToFileTime(&now, &ticks));
    ASSERT_TRUE(FileTimeToSystemTime(&ticks, &sameDay));
    EXPECT_TRUE(now == sameDay);
}

}  // namespace
