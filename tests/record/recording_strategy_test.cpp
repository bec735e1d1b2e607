#include "record/recording_strategy.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "tests/record/log_track_fixture.h"
#include "tests/support/virtual_slot.h"
#include "track/geodesy.h"

namespace {

constexpr std::int32_t kStart = 1'000'000'000;
constexpr double kMetresPerDegree = 111120.0;  // along a meridian, on the sphere that distances are measured on

// A fix `seconds` after the start, driving north.
TckPt FixAt(int seconds, double speed = 0.0, double metresNorth = 0.0) {
    TckPt fix{};
    fix.dLatitude = 47.0 + metresNorth / kMetresPerDegree;
    fix.dLongitude = 8.0;
    fix.dSpeed = speed;
    fix.lTime = kStart + seconds;
    return fix;
}

TckPt FixWithTime(std::int32_t time) {
    TckPt fix{};
    fix.lTime = time;
    return fix;
}

double Metres(const TckPt& from, const TckPt& to) {
    double distance = 0.0;
    double bearing = 0.0;
    CalDistance(from.dLatitude, from.dLongitude, to.dLatitude, to.dLongitude, 0, &distance, &bearing);
    return distance;
}

// Seconds after the start of the points chosen so far.
std::vector<int> Chosen(ITrackSaveStragy& strategy) {
    Points points;
    strategy.GetSavePtLst(points);
    std::vector<int> seconds;
    for (const TckPt& point : points) seconds.push_back(point.lTime - kStart);
    return seconds;
}

using Seconds = std::vector<int>;

constexpr double kNever = 1e18;  // a distance break that no run reaches

}  // namespace

// --- What every strategy ignores ---

class AnyStrategy : public ::testing::TestWithParam<int> {
 protected:
    AnyStrategy() {
        if (GetParam() == 0) m_strategy = std::make_unique<CTrackDistStragy>(3.0);
        if (GetParam() == 1) m_strategy = std::make_unique<CTrackTimeStragy>(1);
        if (GetParam() == 2) m_strategy = std::make_unique<CTrackAutoStragy>(3.0, 1);
    }
    ITrackSaveStragy& Strategy() { return *m_strategy; }

    std::unique_ptr<ITrackSaveStragy> m_strategy;
};
INSTANTIATE_TEST_SUITE_P(DistTimeAuto, AnyStrategy, ::testing::Values(0, 1, 2));

TEST(StrategyInterface, Operations_KeepTheirOrder) {
    EXPECT_EQ(SlotOf(&ITrackSaveStragy::AddFixPt), 1u);
    EXPECT_EQ(SlotOf(&ITrackSaveStragy::ClearSavePtLst), 2u);
    EXPECT_EQ(SlotOf(&ITrackSaveStragy::GetSavePtLst), 3u);
    EXPECT_EQ(SlotOf(&ITrackSaveStragy::GetRecentPtLst), 4u);
}

TEST_P(AnyStrategy, FixWithoutTime_IsIgnored) {
    EXPECT_EQ(Strategy().AddFixPt(FixWithTime(0)), 0);
    EXPECT_EQ(Chosen(Strategy()), Seconds{});
    Strategy().AddFixPt(FixAt(0, 10.0));
    EXPECT_EQ(Strategy().AddFixPt(FixWithTime(0)), 0);
}

TEST_P(AnyStrategy, FixOneSecondOlder_IsIgnoredAndChangesNothing) {
    Strategy().AddFixPt(FixAt(0, 2.0));
    Strategy().AddFixPt(FixAt(10, 2.0));
    const Seconds before = Chosen(Strategy());
    EXPECT_EQ(Strategy().AddFixPt(FixAt(9, 1000.0)), 0);
    EXPECT_EQ(Chosen(Strategy()), before);
    EXPECT_NE(Strategy().AddFixPt(FixAt(12, 2.0)), 0);  // 2 s at 2 m/s since the fix of second 10
}

TEST_P(AnyStrategy, FixOfTheSameSecond_IsNotOlder) {
    Strategy().AddFixPt(FixAt(0));
    Strategy().AddFixPt(FixAt(0));
    EXPECT_NE(Strategy().AddFixPt(FixAt(1, 10.0)), 0);
}

TEST_P(AnyStrategy, ClearingTheChosen_EmptiesThem) {
    for (int second = 0; second < 5; ++second) Strategy().AddFixPt(FixAt(second, 10.0));
    EXPECT_FALSE(Chosen(Strategy()).empty());
    Strategy().ClearSavePtLst();
    EXPECT_EQ(Chosen(Strategy()), Seconds{});
}

TEST_P(AnyStrategy, TakingTheChosen_ReplacesTheOutput) {
    Points out(7);
    Strategy().GetSavePtLst(out);
    EXPECT_TRUE(out.empty());
}

TEST_P(AnyStrategy, ChosenPoint_IsTheFixByteForByte) {
    TckPt fix = FixAt(0, 10.0);
    fix.dAltitude = 431.5;
    fix.fCourse = 271.25f;
    fix.reserved[7] = 0xEE;
    Strategy().AddFixPt(fix);
    Strategy().AddFixPt(FixAt(1, 10.0));
    Points chosen;
    Strategy().GetSavePtLst(chosen);
    ASSERT_FALSE(chosen.empty());
    EXPECT_EQ(std::memcmp(&chosen[0], &fix, sizeof fix), 0);
}

TEST_P(AnyStrategy, TimesFarApart_DoNotOverflow) {
    Strategy().AddFixPt(FixWithTime(std::numeric_limits<std::int32_t>::min()));
    TckPt farLater = FixWithTime(std::numeric_limits<std::int32_t>::max());
    farLater.dLatitude = 1.0;
    EXPECT_NE(Strategy().AddFixPt(farLater), 0);
    EXPECT_EQ(Strategy().AddFixPt(FixWithTime(std::numeric_limits<std::int32_t>::min())), 0);
}

// --- By time ---

TEST(TimeStrategy, FirstFix_IsChosen) {
    CTrackTimeStragy strategy(5);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 1);
    EXPECT_EQ(Chosen(strategy), Seconds{0});
}

TEST(TimeStrategy, FixesWithinTheInterval_AnswerOneWithoutBeingChosen) {
    CTrackTimeStragy strategy(5);
    for (int second = 0; second <= 4; ++second) EXPECT_EQ(strategy.AddFixPt(FixAt(second)), 1);
    EXPECT_EQ(Chosen(strategy), Seconds{0});
}

TEST(TimeStrategy, Interval_IsMeasuredFromTheLastChosenFix) {
    CTrackTimeStragy strategy(5);
    for (const int second : {0, 4, 5, 9, 10}) strategy.AddFixPt(FixAt(second));
    EXPECT_EQ(Chosen(strategy), (Seconds{0, 5, 10}));
}

TEST(TimeStrategy, FixOlderThanOneThatWasNotChosen_IsStillTimely) {
    CTrackTimeStragy strategy(5);
    strategy.AddFixPt(FixAt(0));
    strategy.AddFixPt(FixAt(4));
    EXPECT_EQ(strategy.AddFixPt(FixAt(2)), 1);  // not before second 0, the last chosen
}

TEST(TimeStrategy, IntervalOfFive_IsFullWithTwelvePoints) {
    CTrackTimeStragy strategy(5);
    for (int point = 1; point <= 11; ++point) EXPECT_EQ(strategy.AddFixPt(FixAt(5 * point)), 1) << point;
    EXPECT_EQ(strategy.AddFixPt(FixAt(60)), 2);
    EXPECT_EQ(strategy.AddFixPt(FixAt(61)), 2) << "full until it is cleared, chosen or not";
    strategy.ClearSavePtLst();
    EXPECT_EQ(strategy.AddFixPt(FixAt(65)), 1);
}

TEST(TimeStrategy, IntervalThatDoesNotDivideAMinute_RoundsTheBatchDown) {
    CTrackTimeStragy strategy(7);  // 60 / 7 = 8
    for (int point = 1; point <= 7; ++point) EXPECT_EQ(strategy.AddFixPt(FixAt(7 * point)), 1);
    EXPECT_EQ(strategy.AddFixPt(FixAt(56)), 2);
}

TEST(TimeStrategy, IntervalAboveAMinute_AnswersTwoForEveryTimelyFix) {
    CTrackTimeStragy strategy(61);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 2);
    EXPECT_EQ(strategy.AddFixPt(FixAt(1)), 2);
    EXPECT_EQ(Chosen(strategy), Seconds{0});
    strategy.ClearSavePtLst();
    EXPECT_EQ(strategy.AddFixPt(FixAt(2)), 2);
    EXPECT_EQ(Chosen(strategy), Seconds{});
}

TEST(TimeStrategy, NegativeInterval_IsAHugeOne) {
    CTrackTimeStragy strategy(static_cast<std::uint32_t>(-1));
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 2);
    EXPECT_EQ(Chosen(strategy), Seconds{}) << "not even the first fix is that far from 1970";
}

TEST(TimeStrategy, IntervalOfZero_ChoosesEveryFix) {
    CTrackTimeStragy strategy(0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 1);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 1);
    EXPECT_EQ(Chosen(strategy), (Seconds{0, 0}));
}

// --- By distance ---

TEST(DistStrategy, FirstFix_OpensARunAndIsNotChosen) {
    CTrackDistStragy strategy(3.0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 0);
    EXPECT_EQ(Chosen(strategy), Seconds{});
}

TEST(DistStrategy, BreakReached_ChoosesTheFixThatBeganTheRun) {
    CTrackDistStragy strategy(5.0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0, 2.0)), 0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(1, 2.0)), 0);  // 2 m
    EXPECT_EQ(strategy.AddFixPt(FixAt(2, 2.0)), 0);  // 4 m
    EXPECT_EQ(strategy.AddFixPt(FixAt(3, 2.0)), 1);  // 6 m
    EXPECT_EQ(Chosen(strategy), Seconds{0});
}

TEST(DistStrategy, BreakReachedExactly_Counts) {
    CTrackDistStragy strategy(4.0);
    strategy.AddFixPt(FixAt(0, 2.0));
    strategy.AddFixPt(FixAt(1, 2.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(2, 2.0)), 1);
}

TEST(DistStrategy, NewFix_BeginsTheNextRunFromZero) {
    CTrackDistStragy strategy(5.0);
    for (int second = 0; second <= 5; ++second) strategy.AddFixPt(FixAt(second, 2.0));
    EXPECT_EQ(Chosen(strategy), Seconds{0}) << "the metre beyond the break is not carried over";
    strategy.AddFixPt(FixAt(6, 2.0));
    EXPECT_EQ(Chosen(strategy), (Seconds{0, 3}));
}

TEST(DistStrategy, StepBelowFiveSeconds_IsMeasuredBySpeeds) {
    CTrackDistStragy strategy(10.0);
    strategy.AddFixPt(FixAt(0, 2.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(4, 2.9, 1000.0)), 0);  // (2 + 2.9) * 4 / 2 = 9.8 m, far as it is
    EXPECT_EQ(strategy.AddFixPt(FixAt(5, 0.0, 1000.0)), 1);  // + 1.45 m
}

TEST(DistStrategy, StepOfFiveSeconds_IsMeasuredByPositions) {
    CTrackDistStragy strategy(10.0);
    strategy.AddFixPt(FixAt(0, 100.0, 0.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(5, 100.0, 9.0)), 0) << "500 m by the speeds";
    EXPECT_EQ(strategy.AddFixPt(FixAt(10, 100.0, 11.0)), 1);
}

// Measured the other way round a distance may differ in its last bits; the break is the longer of the two.
TEST(DistStrategy, LongStep_IsMeasuredFromTheNewFixBack) {
    int different = 0;
    for (int i = 1; i <= 100; ++i) {
        const TckPt first = FixAt(0);
        TckPt second = FixAt(5, 0.0, 37.0 * i);
        second.dLongitude += 0.0017 * i;
        const double back = Metres(second, first);
        const double there = Metres(first, second);
        if (back == there) continue;
        ++different;
        CTrackDistStragy strategy(std::max(back, there));
        strategy.AddFixPt(first);
        EXPECT_EQ(strategy.AddFixPt(second), back > there ? 1 : 0) << "fix " << i;
    }
    EXPECT_GT(different, 0);
}

TEST(DistStrategy, LongSteps_AddUp) {
    CTrackDistStragy strategy(10.0);
    strategy.AddFixPt(FixAt(0, 0.0, 0.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(5, 0.0, 6.0)), 0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(10, 0.0, 1.0)), 1);  // 6 m there, 5 m back
}

TEST(DistStrategy, StepIsMeasuredFromTheNewestFixOfTheRun) {
    CTrackDistStragy strategy(10.0);
    for (int step = 0; step <= 4; ++step)  // to and fro: 4 steps of 3 m, never more than 3 m from the first
        EXPECT_EQ(strategy.AddFixPt(FixAt(5 * step, 0.0, step % 2 == 0 ? 0.0 : 3.0)), step == 4 ? 1 : 0);
}

TEST(DistStrategy, SameSecondTwice_AddsNoDistance) {
    CTrackDistStragy strategy(1.0);
    strategy.AddFixPt(FixAt(0, 1000.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(0, 1000.0, 500.0)), 0);
}

TEST(DistStrategy, NegativeSpeeds_CountByTheMagnitudeOfTheirSum) {
    CTrackDistStragy strategy(10.0);
    strategy.AddFixPt(FixAt(0, -6.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(1, 6.0)), 0);    // cancels out
    EXPECT_EQ(strategy.AddFixPt(FixAt(2, -26.0)), 1);  // |6 - 26| / 2 = 10 m
}

TEST(DistStrategy, ThirtyPoints_AreABatch) {
    CTrackDistStragy strategy(3.0);
    strategy.AddFixPt(FixAt(0, 10.0));
    for (int point = 1; point <= 29; ++point) EXPECT_EQ(strategy.AddFixPt(FixAt(point, 10.0)), 1) << point;
    EXPECT_EQ(strategy.AddFixPt(FixAt(30, 10.0)), 2);
    EXPECT_EQ(strategy.AddFixPt(FixAt(31, 10.0)), 2) << "still full";
}

TEST(DistStrategy, ClearingTheChosen_KeepsTheRun) {
    CTrackDistStragy strategy(5.0);
    for (int second = 0; second <= 3; ++second) strategy.AddFixPt(FixAt(second, 2.0));
    strategy.AddFixPt(FixAt(4, 2.0));
    strategy.ClearSavePtLst();
    strategy.AddFixPt(FixAt(5, 2.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(6, 2.0)), 1);
    EXPECT_EQ(Chosen(strategy), Seconds{3});
}

TEST(DistStrategy, DistanceOfZero_ChoosesEveryFixButTheNewest) {
    CTrackDistStragy strategy(0.0);
    for (int second = 0; second <= 3; ++second) strategy.AddFixPt(FixAt(second));
    EXPECT_EQ(Chosen(strategy), (Seconds{0, 1, 2}));
}

// --- Automatic ---

TEST(AutoStrategy, FirstFix_OpensARunAndIsNotChosen) {
    CTrackAutoStragy strategy(3.0, 1);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 0);
    EXPECT_EQ(Chosen(strategy), Seconds{});
}

TEST(AutoStrategy, Defaults_ChooseEachFixASecondLaterAndSixtyAreABatch) {
    CTrackAutoStragy strategy(3.0, 1);
    EXPECT_EQ(strategy.AddFixPt(FixAt(0)), 0);
    for (int point = 1; point <= 59; ++point) {
        EXPECT_EQ(strategy.AddFixPt(FixAt(point)), 1) << point;
        EXPECT_EQ(Chosen(strategy).back(), point - 1);
    }
    EXPECT_EQ(strategy.AddFixPt(FixAt(60)), 2);
    EXPECT_EQ(Chosen(strategy).size(), 60u);
}

TEST(AutoStrategy, DistanceBreakBeforeTheTimeBreak_Completes) {
    CTrackAutoStragy strategy(5.0, 100);
    strategy.AddFixPt(FixAt(0, 3.0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(1, 3.0)), 0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(2, 3.0)), 1);
    EXPECT_EQ(Chosen(strategy), Seconds{0});
}

TEST(AutoStrategy, TimeBreak_IsMeasuredFromTheFirstFixOfTheRun) {
    CTrackAutoStragy strategy(kNever, 10);
    for (const int second : {0, 6, 9}) EXPECT_EQ(strategy.AddFixPt(FixAt(second)), 0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(10)), 1);
    EXPECT_EQ(Chosen(strategy), Seconds{0});
    EXPECT_EQ(strategy.AddFixPt(FixAt(19)), 0);
    EXPECT_EQ(strategy.AddFixPt(FixAt(20)), 1);
    EXPECT_EQ(Chosen(strategy), (Seconds{0, 10}));
}

TEST(AutoStrategy, RunEndedByTime_LosesItsDistance) {
    CTrackAutoStragy strategy(10.0, 4);
    strategy.AddFixPt(FixAt(0, 2.0));
    strategy.AddFixPt(FixAt(4, 2.0));                // 8 m, ended by time
    EXPECT_EQ(strategy.AddFixPt(FixAt(5, 2.0)), 0);  // would be 10 m
}

TEST(AutoStrategy, NegativeTimeBreak_IsAHugeOne) {
    CTrackAutoStragy strategy(kNever, static_cast<std::uint32_t>(-1));
    strategy.AddFixPt(FixAt(0));
    EXPECT_EQ(strategy.AddFixPt(FixAt(1'000'000)), 0);
}

TEST(AutoStrategy, ClearingTheChosen_KeepsTheRun) {
    CTrackAutoStragy strategy(kNever, 10);
    for (const int second : {0, 10, 15}) strategy.AddFixPt(FixAt(second));
    strategy.ClearSavePtLst();
    EXPECT_EQ(strategy.AddFixPt(FixAt(20)), 1);
    EXPECT_EQ(Chosen(strategy), Seconds{10});
}

// --- The newest of the chosen points ---

class RecentChosen : public ::testing::Test {
 protected:
    // Chooses every fix; times are seconds before now.
    void Choose(std::initializer_list<int> ages) {
        const auto now = static_cast<std::int32_t>(Now());
        for (const int age : ages) m_strategy.AddFixPt(FixWithTime(now - age));
    }
    std::size_t RecentWithin(int seconds) {
        Points out;
        m_strategy.GetRecentPtLst(out, seconds);
        return out.size();
    }

    CTrackTimeStragy m_strategy{1};
};

TEST_F(RecentChosen, PointsUpToThatOld_AreGiven) {
    Choose({5000, 3000, 1000});
    EXPECT_EQ(RecentWithin(4000), 2u);
    EXPECT_EQ(RecentWithin(10000), 3u);
    EXPECT_EQ(RecentWithin(500), 0u);
}

TEST_F(RecentChosen, PointOfExactlyThatAge_IsGiven) {
    Choose({100});
    Points chosen;
    m_strategy.GetSavePtLst(chosen);
    const std::int32_t time = chosen.at(0).lTime;
    EXPECT_EQ(WithExactAge(time, [&](int age) { return RecentWithin(age); }), 1u);
    EXPECT_EQ(WithExactAge(time, [&](int age) { return RecentWithin(age - 1); }), 0u);
}

TEST_F(RecentChosen, ZeroSeconds_GiveThePresentAndTheFuture) {
    Choose({1000, -1000, -2000});
    EXPECT_EQ(RecentWithin(0), 2u);
}

TEST_F(RecentChosen, PointsAreAppendedInOrder) {
    Choose({300, 200, 100});
    Points out(2);
    m_strategy.GetRecentPtLst(out, 250);
    ASSERT_EQ(out.size(), 4u);
    EXPECT_EQ(out[3].lTime - out[2].lTime, 100);
}

TEST_F(RecentChosen, OldPointBetween_IsSkippedNotStoppedAt) {
    CTrackTimeStragy strategy(100);
    const auto now = static_cast<std::int32_t>(Now());
    strategy.AddFixPt(FixWithTime(now - 5000));
    strategy.AddFixPt(FixWithTime(now - 100));
    Points out;
    strategy.GetRecentPtLst(out, 1000);
    EXPECT_EQ(out.size(), 1u);
}

TEST_F(RecentChosen, NothingChosen_LeavesTheOutputAlone) {
    Points out(3);
    m_strategy.GetRecentPtLst(out, 1000);
    EXPECT_EQ(out.size(), 3u);
}

TEST_F(RecentChosen, PendingRun_IsNotAmongThem) {
    CTrackDistStragy strategy(100.0);
    strategy.AddFixPt(FixWithTime(static_cast<std::int32_t>(Now())));
    Points out;
    strategy.GetRecentPtLst(out, 1000);
    EXPECT_TRUE(out.empty());
}
