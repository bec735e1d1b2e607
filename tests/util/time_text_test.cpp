// The texts of times: DTSTR2SYS, which reads them, and GetLocalTimeStr, which writes the local clock.
#include <cstdlib>
#include <ctime>
#include <optional>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/german_locale.h"
#include "tests/support/machine.h"
#include "tests/util/calendar_fixture.h"
#include "util/time.h"

namespace {

// What no field of the texts below holds.
const SYSTEMTIME kUnset = Calendar(7777, 77, 77, 77, 77, 77, 777, 7);

SYSTEMTIME Read(const std::string& text, SYSTEMTIME st = kUnset) {
    DTSTR2SYS(text, st);
    return st;
}

struct DateText {
    int year, month, day, hour, minute, second;
};

// Reads the text; day of week and milliseconds must stay as they were.
void ExpectRead(const std::string& text, const DateText& expected) {
    SYSTEMTIME st = Calendar(expected.year, expected.month, expected.day, expected.hour, expected.minute,
                             expected.second, kUnset.wMilliseconds, kUnset.wDayOfWeek);
    EXPECT_EQ(Read(text), st) << '"' << text << '"';
}

// The clock as text in a zone that far east of Greenwich.
std::string ClockText(long secondsEast) {
    const std::time_t there = Now() + secondsEast;
    const std::tm fields = UtcTime(there);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H%M%S", &fields);
    return text;
}

// Whether the answer is the zone's clock at some moment of the call.
void ExpectLocalClock(const char* zone, long secondsEast) {
    const TimeZone here(zone);
    const std::string before = ClockText(secondsEast);
    const std::string answer = GetLocalTimeStr();
    const std::string after = ClockText(secondsEast);
    EXPECT_LE(before, answer) << zone;
    EXPECT_LE(answer, after) << zone;
    EXPECT_EQ(answer.size(), 17u);
}

}  // namespace

TEST(ReadTime, IsoText_FillsSixFields) { ExpectRead("2001-09-09T01:46:40Z", {2001, 9, 9, 1, 46, 40}); }

TEST(ReadTime, NoT_ChangesNothing) {
    for (const char* text : {"", "2001-09-09", "2001-09-09 01:46:40", "01:46:40", "2001-09-09t01:46:40"})
        EXPECT_EQ(Read(text), kUnset) << text;
}

TEST(ReadTime, DayOfWeekAndMilliseconds_Stay) {
    const SYSTEMTIME st = Read("2001-09-09T01:46:40.250Z");
    EXPECT_EQ(st.wDayOfWeek, kUnset.wDayOfWeek);
    EXPECT_EQ(st.wMilliseconds, kUnset.wMilliseconds);
}

TEST(ReadTime, AnyTailBehindTheSeconds_IsIgnored) {
    for (const char* tail : {"", "Z", ".250", ".999Z", "+02:00", "-05:30", " UTC", ":77", "T88"})
        ExpectRead(std::string("2001-09-09T01:46:40") + tail, {2001, 9, 9, 1, 46, 40});
}

TEST(ReadTime, NumbersAreReadAtAnyLength) {
    ExpectRead("1-2-3T4:5:6", {1, 2, 3, 4, 5, 6});
    ExpectRead("02001-009-009T001:046:040", {2001, 9, 9, 1, 46, 40});
}

TEST(ReadTime, NumbersAreNotJudged) { ExpectRead("2001-13-32T25:61:62", {2001, 13, 32, 25, 61, 62}); }

TEST(ReadTime, BlanksAndSigns_AreTakenAsAtoiTakesThem) {
    ExpectRead(" \t2001- 09-\n+9T +1: 46:\v\f40", {2001, 9, 9, 1, 46, 40});
    ExpectRead("2001-09-- 9T1:2:- 3", {2001, 9, 0, 1, 2, 0});
    ExpectRead("2001-09-+-9T1:2:3", {2001, 9, 0, 1, 2, 3});
}

TEST(ReadTime, NumbersAreDecimalOnly) { ExpectRead("012-0x10-010T08:09:0x5", {12, 0, 10, 8, 9, 0}); }

TEST(ReadTime, TextThatIsNoNumber_IsZero) {
    ExpectRead("year-month-dayThour:minute:second", {0, 0, 0, 0, 0, 0});
    ExpectRead("--T::", {0, 0, 0, 0, 0, 0});
}

TEST(ReadTime, NumbersAreStoredIn16Bits) {
    ExpectRead("65536-65537-65538T65539:65540:65541", {0, 1, 2, 3, 4, 5});
    ExpectRead("2001-09--5T01:46:-1", {2001, 9, 65531, 1, 46, 65535});
}

TEST(ReadTime, LeadingMinus_IsTheFirstSeparator) { ExpectRead("-5-03-02T1:2:3", {0, 5, 3, 1, 2, 3}); }

TEST(ReadTime, DateWithoutSeparators_IsAllDay) {
    ExpectRead("20010909T01:46:40", {kUnset.wYear, kUnset.wMonth, 20010909 % 65536, 1, 46, 40});
}

TEST(ReadTime, DateWithOneSeparator_LeavesTheMonth) {
    ExpectRead("2001-09T01:46:40", {2001, kUnset.wMonth, 9, 1, 46, 40});
}

TEST(ReadTime, DateWithMoreSeparators_TakesTheDayFromTheThirdNumber) {
    ExpectRead("2001-09-08-07T01:46:40", {2001, 9, 8, 1, 46, 40});
}

TEST(ReadTime, TimeWithoutSeparators_IsAllSeconds) {
    ExpectRead("2001-09-09T014640", {2001, 9, 9, kUnset.wHour, kUnset.wMinute, 14640});
}

TEST(ReadTime, TimeWithOneSeparator_LeavesTheMinute) {
    ExpectRead("2001-09-09T01:46", {2001, 9, 9, 1, kUnset.wMinute, 46});
}

TEST(ReadTime, EmptyDateOrTime_SetsDayAndSecondToZero) {
    ExpectRead("T", {kUnset.wYear, kUnset.wMonth, 0, kUnset.wHour, kUnset.wMinute, 0});
    ExpectRead("2001-09-09T", {2001, 9, 9, kUnset.wHour, kUnset.wMinute, 0});
    ExpectRead("T01:46:40", {kUnset.wYear, kUnset.wMonth, 0, 1, 46, 40});
}

TEST(ReadTime, FirstT_DividesDateAndTime) {
    ExpectRead("Tue 2001-09-09T01:46:40", {kUnset.wYear, kUnset.wMonth, 0, 0, 46, 40});
    ExpectRead("2001-09-09TT01:46:40", {2001, 9, 9, 0, 46, 40});
}

TEST(ReadTime, LongText_IsRead) {
    ExpectRead("2001-09-09T01:46:40" + std::string(100000, 'Z'), {2001, 9, 9, 1, 46, 40});
    Read(std::string(100000, '9') + "T" + std::string(100000, '9'));
}

TEST(ReadTime, GermanLocale_ChangesNothing) {
    const GermanLocale german;
    if (!german.Active()) GTEST_SKIP() << "no German locale can be made here (localedef, package locales)";
    ExpectRead("2001-09-09T01:46:40,5", {2001, 9, 9, 1, 46, 40});
}

TEST(LocalTimeText, EveryTimeZone_IsItsClock) {
    if (!TimeZone::Active()) GTEST_SKIP() << "a process has no time zone of its own here";
    ExpectLocalClock("UTC0", 0);
    ExpectLocalClock("<+0545>-5:45", 5 * 3600 + 45 * 60);
    ExpectLocalClock("<-0330>3:30", -(3 * 3600 + 30 * 60));
    ExpectLocalClock("<+14>-14", 14 * 3600);
    ExpectLocalClock("<-12>12", -12 * 3600);
}

// A zone whose summer lasts all year, so that the shift by an hour shows on every day.
TEST(LocalTimeText, SummerTime_IsPartOfTheClock) {
    if (!TimeZone::Active()) GTEST_SKIP() << "a process has no time zone of its own here";
    ExpectLocalClock("STD-1DST-2,J1/0,J365/25", 2 * 3600);
}

TEST(LocalTimeText, Form_IsDateBlankAndSixDigits) {
    const std::string text = GetLocalTimeStr();
    ASSERT_EQ(text.size(), 17u);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == 4 || i == 7)
            EXPECT_EQ(text[i], '-');
        else if (i == 10)
            EXPECT_EQ(text[i], ' ');
        else
            EXPECT_TRUE(text[i] >= '0' && text[i] <= '9') << text;
    }
}
