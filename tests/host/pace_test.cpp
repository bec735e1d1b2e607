// When the fixes of a replay are due.
#include "host/source/pace.h"

#include <gtest/gtest.h>

#include "host/source/back_off.h"

namespace host {
namespace {

using std::chrono::seconds;

const Pace::Clock::time_point kBegin{seconds(1000)};

TckPt After(int time) {
    TckPt fix{};
    fix.lTime = 1'715'500'800 + time;
    return fix;
}

TEST(Pace, WithoutSpeed_EachFixIsDueAtOnce) {
    Pace pace(std::nullopt);
    EXPECT_EQ(pace.DueTime(After(0), kBegin), kBegin);
    EXPECT_EQ(pace.DueTime(After(900), kBegin + seconds(5)), kBegin + seconds(5));
}

TEST(Pace, Speed_DividesTheTimeBetweenFixes) {
    Pace pace(4.0);
    EXPECT_EQ(pace.DueTime(After(0), kBegin), kBegin);
    EXPECT_EQ(pace.DueTime(After(100), kBegin), kBegin + seconds(25));
    EXPECT_EQ(pace.DueTime(After(200), kBegin + seconds(26)), kBegin + seconds(50));  // being late adds nothing
}

TEST(Pace, StepBackAndLongGap_TakeNoTime) {
    Pace pace(1.0);
    pace.DueTime(After(0), kBegin);
    EXPECT_EQ(pace.DueTime(After(-50), kBegin), kBegin);
    EXPECT_EQ(pace.DueTime(After(-50 + 1800), kBegin), kBegin);  // a new trip
    EXPECT_EQ(pace.DueTime(After(-50 + 1800 + 1799), kBegin), kBegin + seconds(1799));
}

TEST(BackOff, Pauses_DoubleUpToTheLongest) {
    BackOff backOff;
    std::chrono::milliseconds expected = BackOff::kFirst;
    for (int i = 0; i < 8; ++i, expected *= 2) EXPECT_EQ(backOff.Next(), std::min(expected, BackOff::kLongest));
    EXPECT_EQ(backOff.Next(), BackOff::kLongest);
    backOff.Reset();
    EXPECT_EQ(backOff.Next(), BackOff::kFirst);
}

}  // namespace
}  // namespace host
