// Times as documents state them: host/text/iso_time.h.
#include "host/text/iso_time.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(IsoTime, Text_IsUtcToTheSecond) {
    EXPECT_EQ(IsoText(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(IsoText(1000000000), "2001-09-09T01:46:40Z");
    EXPECT_EQ(IsoText(2147483647), "2038-01-19T03:14:07Z");
    EXPECT_EQ(IsoText(-1), "1969-12-31T23:59:59Z");
}

TEST(IsoTime, Zones_AreTakenOff) {
    const std::int64_t noon = 1715515200;  // 2024-05-12 12:00 UTC
    for (const char* text :
         {"2024-05-12T12:00:00Z", "2024-05-12T12:00:00", "2024-05-12T14:00:00+02:00",
          "2024-05-12T14:00:00+0200", "2024-05-12T14:00:00+02", "2024-05-12T06:30:00-05:30",
          "2024-05-12t12:00:00z", " \n2024-05-12T12:00:00Z\t", "2024-05-12T12:00Z", "2024-05-12 12:00:00"})
        EXPECT_EQ(ReadIsoTime(text), noon) << text;
}

TEST(IsoTime, Fractions_AreCut) {
    EXPECT_EQ(ReadIsoTime("2001-09-09T01:46:40.999Z"), 1000000000);
    EXPECT_EQ(ReadIsoTime("2001-09-09T01:46:40,5+00:00"), 1000000000);
}

TEST(IsoTime, LeapSecond_IsTheNextMinute) { EXPECT_EQ(ReadIsoTime("2016-12-31T23:59:60Z"), 1483228800); }

TEST(IsoTime, EndOfTheDay_IsTheNextMidnight) {
    EXPECT_EQ(ReadIsoTime("2001-09-08T24:00:00Z"), ReadIsoTime("2001-09-09T00:00:00Z"));
}

TEST(IsoTime, OtherTexts_AreNoTimes) {
    for (const char* text : {"", "now", "2024-05-12", "2024-13-01T00:00:00Z", "2023-02-29T00:00:00Z",
                             "2024-05-12T25:00:00Z", "2024-05-12T24:00:01Z", "2024-05-12T12:60:00Z",
                             "2024-05-12T12:00:61Z", "2024-05-12T12:00:00X", "2024-05-12T12:00:00Z and more",
                             "2024-5-12T12:00:00Z", "2024-05-12T12:00:00+99:00", "-024-05-12T12:00:00Z"})
        EXPECT_EQ(ReadIsoTime(text), std::nullopt) << text;
}

TEST(IsoTime, EveryDay_ReadsBack) {
    for (std::int64_t time = -2147483648; time <= 2147483647; time += 86'400 * 37 + 4711)
        ASSERT_EQ(ReadIsoTime(IsoText(time)), time);
}

}  // namespace
}  // namespace host
