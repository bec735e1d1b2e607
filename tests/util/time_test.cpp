// Time values and calendar records. Their texts: tests/util/time_text_test.cpp.
#include "util/time.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "tests/util/calendar_fixture.h"

namespace {

constexpr std::int64_t kSecondsOfDay = 86400;

SYSTEMTIME CalendarOf(long t) {
    SYSTEMTIME st = Calendar(7, 7, 7, 7, 7, 7, 7, 7);
    TimetToSystemTime(t, &st);
    return st;
}

}  // namespace

TEST(ToTimeValue, Epoch_IsZero) { EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1970, 1, 1)), 0u); }

TEST(ToTimeValue, Milliseconds_AreDropped) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2001, 9, 9, 1, 46, 40, 999)), 1000000000u);
}

TEST(ToTimeValue, DayOfWeek_IsIgnored) {
    for (const int dayOfWeek : {0, 6, 7, 65535})
        EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2001, 9, 9, 1, 46, 40, 0, dayOfWeek)), 1000000000u);
}

TEST(ToTimeValue, LeapDay_IsADay) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2000, 2, 29)), 951782400u);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2000, 3, 1)), 951782400u + 86400u);
}

TEST(ToTimeValue, Before1970_IsNegativeIn32Bits) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1969, 12, 31, 23, 59, 59)), 0xFFFFFFFFu);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1901, 12, 13, 20, 45, 52)), 0x80000000u);
}

TEST(ToTimeValue, MillisecondsBefore1970_RoundTowards1970) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1969, 12, 31, 23, 59, 59, 500)), 0u);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1969, 12, 31, 23, 59, 59, 1)), 0u);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1969, 12, 31, 23, 59, 58, 1)), 0xFFFFFFFFu);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1969, 12, 31, 23, 59, 58, 0)), 0xFFFFFFFEu);
}

TEST(ToTimeValue, Beyond32Bits_IsCutToThem) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2106, 2, 7, 6, 28, 15)), 0xFFFFFFFFu);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2106, 2, 7, 6, 28, 16)), 0u);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(1601, 1, 1)), static_cast<std::uint32_t>(-11644473600));
}

TEST(ToTimeValue, After2038_StaysPositive) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(Calendar(2038, 1, 19, 3, 14, 8)), 0x80000000u);
}

TEST(ToCalendar, Zero_IsAThursday) { EXPECT_EQ(CalendarOf(0), Calendar(1970, 1, 1, 0, 0, 0, 0, 4)); }

TEST(ToCalendar, AllEightFields_AreFilled) {
    EXPECT_EQ(CalendarOf(1000000000), Calendar(2001, 9, 9, 1, 46, 40, 0, 0));
}

TEST(ToCalendar, Before1970_IsTheDateBefore) {
    EXPECT_EQ(CalendarOf(-1), Calendar(1969, 12, 31, 23, 59, 59, 0, 3));
}

TEST(ToCalendar, EndsOf32Bits_AreDates) {
    EXPECT_EQ(CalendarOf(std::numeric_limits<std::int32_t>::max()), Calendar(2038, 1, 19, 3, 14, 7, 0, 2));
    EXPECT_EQ(CalendarOf(std::numeric_limits<std::int32_t>::min()), Calendar(1901, 12, 13, 20, 45, 52, 0, 5));
}

// A time value has 32 bits; where a long has more, the answer of ChangeSYSTIMEToTime_T goes back in as it is.
TEST(TimeValue, RecordThatIsNoDate_IsZero) {
    EXPECT_EQ(ChangeSYSTIMEToTime_T(SYSTEMTIME{}), 0u);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(SYSTEMTIME{2001, 13, 0, 9, 1, 46, 40, 0}), 0u);
    EXPECT_EQ(ChangeSYSTIMEToTime_T(SYSTEMTIME{2001, 2, 0, 30, 1, 46, 40, 0}), 0u);
}

TEST(TimeValue, Before1970_ComesBackThroughTheWiderLong) {
    for (const SYSTEMTIME& date :
         {Calendar(1969, 12, 31, 23, 59, 59, 0, 3), Calendar(1901, 12, 14, 0, 0, 0, 0, 6)})
        EXPECT_EQ(CalendarOf(static_cast<long>(ChangeSYSTIMEToTime_T(date))), date);
}

TEST(TimeValue, EveryDayOf32Bits_IsThatOfTheCalendar) {
    DayByDay calendar(1901, 12, 14, 6);  // the first whole day, a Saturday
    std::int64_t midnight = -24855 * kSecondsOfDay;
    for (; midnight + kSecondsOfDay - 1 <= std::numeric_limits<std::int32_t>::max();
         midnight += kSecondsOfDay) {
        for (const int second : {0, 1, 3599, 3600, 43200, 86398, 86399}) {
            const long t = static_cast<long>(midnight + second);
            ASSERT_EQ(CalendarOf(t), calendar.At(second)) << t;
            ASSERT_EQ(ChangeSYSTIMEToTime_T(calendar.At(second)), static_cast<std::uint32_t>(t)) << t;
        }
        calendar.Next();
    }
    EXPECT_EQ(calendar.At(0), CalendarOf(static_cast<long>(midnight))) << "the sweep did not reach 2038-01-19";
}

TEST(TimeValue, EverySecondOfADay_ComesBack) {
    const long midnight = 1709164800;  // 2024-02-29
    for (int second = 0; second < 86400; ++second) {
        const SYSTEMTIME expected = Calendar(2024, 2, 29, second / 3600, second / 60 % 60, second % 60, 0, 4);
        ASSERT_EQ(CalendarOf(midnight + second), expected);
        ASSERT_EQ(ChangeSYSTIMEToTime_T(expected), static_cast<unsigned long>(midnight + second));
    }
}

TEST(TimeValue, DaysFrom1601To2400_AreThoseOfTheCalendar) {
    DayByDay calendar(1601, 1, 1, 1);  // a Monday
    for (std::int64_t midnight = -11644473600; midnight < 13569465600; midnight += kSecondsOfDay) {
        ASSERT_EQ(ChangeSYSTIMEToTime_T(calendar.At(0)), static_cast<std::uint32_t>(midnight)) << midnight;
        calendar.Next();
    }
}
