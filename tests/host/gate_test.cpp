// The quality gate: what it refuses and why, and that it never stops a recording for good.
#include "host/source/gate.h"

#include <gtest/gtest.h>

namespace host {
namespace {

constexpr std::int32_t kStart = 1'715'500'800;  // 2024-05-12 08:00
constexpr double kMetresInADegree = 60 * 1852;

// A fix so many seconds after the start and so many metres to the north.
Fix At(std::int32_t seconds, double metres, std::optional<double> hdop = std::nullopt) {
    Fix fix{};
    fix.dLatitude = 47 + metres / kMetresInADegree;
    fix.dLongitude = 8;
    fix.lTime = kStart + seconds;
    fix.hdop = hdop;
    return fix;
}

class GateTest : public ::testing::Test {
 protected:
    bool Passes(const Fix& fix) { return m_gate.Pass(fix, m_now).has_value(); }
    std::uint64_t Refused(GateReason why) const { return m_gate.Counts().Refused(why); }

    Gate m_gate{GateSettings{10, 150}};
    std::optional<std::int64_t> m_now;
};

TEST_F(GateTest, DriveWithoutFault_PassesWhole) {
    for (int second = 0; second < 100; ++second) EXPECT_TRUE(Passes(At(second, 30.0 * second, 0.9)));
    EXPECT_EQ(RefusedByReason(m_gate.Counts()), "");
}

TEST_F(GateTest, Hdop_PassesUpToTheLimit) {
    EXPECT_TRUE(Passes(At(0, 0, 10.0)));
    EXPECT_FALSE(Passes(At(1, 0, 10.1)));
    EXPECT_TRUE(Passes(At(2, 0)));  // the receiver does not tell
    EXPECT_EQ(Refused(GateReason::Hdop), 1u);
}

TEST_F(GateTest, NoPosition_NeverPasses) {
    Fix zero = At(0, 0);
    zero.dLatitude = zero.dLongitude = 0;
    Fix outside = At(0, 0);
    outside.dLongitude = 180.1;
    for (int i = 0; i < 20; ++i) EXPECT_FALSE(Passes(i % 2 == 0 ? zero : outside));
    EXPECT_EQ(Refused(GateReason::NoPlace), 20u);
}

TEST_F(GateTest, NotANumber_NeverPasses) {
    Fix fix = At(0, 0);
    fix.dLatitude = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(Passes(fix));
}

TEST_F(GateTest, TimeBack_IsRefused) {
    EXPECT_TRUE(Passes(At(10, 0)));
    EXPECT_FALSE(Passes(At(9, 0)));
    EXPECT_TRUE(Passes(At(10, 0)));  // the same second is no step back
    EXPECT_EQ(Refused(GateReason::TimeBack), 1u);
}

TEST_F(GateTest, TimeFarAheadOfTheLastFix_IsRefused) {
    EXPECT_TRUE(Passes(At(0, 0)));
    EXPECT_TRUE(Passes(At(86400, 0)));  // a day without reception
    EXPECT_FALSE(Passes(At(2 * 86400 + 1, 0)));
    EXPECT_EQ(Refused(GateReason::TimeAhead), 1u);
}

TEST_F(GateTest, TimeFarAheadOfTheClock_IsRefused) {
    m_now = kStart;
    EXPECT_TRUE(Passes(At(86400, 0)));
    EXPECT_FALSE(Passes(At(86401, 0)));
    EXPECT_EQ(Refused(GateReason::TimeAhead), 1u);
}

TEST_F(GateTest, ImpliedSpeed_PassesUpToTheLimit) {
    EXPECT_TRUE(Passes(At(0, 0)));
    EXPECT_TRUE(Passes(At(2, 299)));
    EXPECT_FALSE(Passes(At(3, 299 + 152)));
    EXPECT_EQ(Refused(GateReason::Speed), 1u);
}

TEST_F(GateTest, TwoFixesWithinASecond_HaveThatSecond) {
    EXPECT_TRUE(Passes(At(0, 0)));
    EXPECT_TRUE(Passes(At(0, 149)));
    EXPECT_FALSE(Passes(At(0, 149 + 152)));
}

TEST_F(GateTest, SingleJump_IsLeftOutAndTheDriveGoesOn) {
    EXPECT_TRUE(Passes(At(0, 0)));
    EXPECT_FALSE(Passes(At(1, 50'000)));
    EXPECT_TRUE(Passes(At(2, 20)));
    EXPECT_EQ(m_gate.Counts().accepted, 0u);
}

// The last fix was the wrong one: the true place is taken up with the fifth fix that agrees with those before.
TEST_F(GateTest, FixesThatAgree_AreBelieved) {
    EXPECT_TRUE(Passes(At(0, 50'000)));
    for (int second = 1; second < Gate::kAgreeing; ++second) EXPECT_FALSE(Passes(At(second, 10.0 * second)));
    for (int second = Gate::kAgreeing; second < 50; ++second) EXPECT_TRUE(Passes(At(second, 10.0 * second)));
    EXPECT_EQ(Refused(GateReason::Speed), Gate::kAgreeing - 1u);
    EXPECT_EQ(m_gate.Counts().accepted, 1u);
}

TEST_F(GateTest, JumpsThatDisagree_AreNeverBelieved) {
    EXPECT_TRUE(Passes(At(0, 0)));
    for (int second = 1; second < 50; ++second) EXPECT_FALSE(Passes(At(second, (second % 2 + 1) * 50'000.0)));
}

TEST_F(GateTest, GoodFixBetween_BeginsTheCountAnew) {
    EXPECT_TRUE(Passes(At(0, 0)));
    for (int round = 0; round < 10; ++round) {
        for (int i = 1; i < Gate::kAgreeing; ++i) EXPECT_FALSE(Passes(At(10 * round + i, 500'000)));
        EXPECT_TRUE(Passes(At(10 * round + 9, 0)));
    }
}

TEST_F(GateTest, TimeThatStaysBack_IsBelieved) {
    EXPECT_TRUE(Passes(At(50'000, 0)));
    for (int second = 1; second < Gate::kAgreeing; ++second) EXPECT_FALSE(Passes(At(second, 0)));
    for (int second = Gate::kAgreeing; second < 50; ++second) EXPECT_TRUE(Passes(At(second, 0)));
}

// A bad antenna costs the first fixes, not the trip.
TEST_F(GateTest, HdopThatStaysHigh_IsBelieved) {
    int passed = 0;
    for (int second = 0; second < 100; ++second) passed += Passes(At(second, 10.0 * second, 12));
    EXPECT_EQ(passed, 100 - (Gate::kAgreeing - 1));
}

TEST_F(GateTest, HdopAfterGoodOnes_IsMeasuredAgain) {
    for (int second = 0; second < 10; ++second) Passes(At(second, 0, 12));
    EXPECT_TRUE(Passes(At(10, 0, 1)));
    EXPECT_FALSE(Passes(At(11, 0, 12)));
}

// A board whose clock stands: the receiver is believed, and at every fix, not at every fifth.
TEST_F(GateTest, ClockFarBehind_IsNotBelievedForGood) {
    m_now = kStart - 100 * 86400;
    int passed = 0;
    for (int second = 0; second < 100; ++second) passed += Passes(At(second, 10.0 * second));
    EXPECT_EQ(passed, 100 - (Gate::kAgreeing - 1));
}

TEST_F(GateTest, WeekRollover_IsMendedByTheClock) {
    m_now = kStart + 30;
    for (const int eras : {1, 2}) {
        Fix old = At(eras, 0);
        old.lTime = static_cast<std::int32_t>(old.lTime - eras * Gate::kEra);
        const auto mended = m_gate.Pass(old, m_now);
        ASSERT_TRUE(mended);
        EXPECT_EQ(mended->lTime, kStart + eras);
    }
    EXPECT_EQ(m_gate.Counts().mended, 2u);
}

TEST_F(GateTest, WeekRollover_IsMendedByTheLastFix) {
    EXPECT_TRUE(Passes(At(0, 0)));
    Fix old = At(1, 0);
    old.lTime = static_cast<std::int32_t>(old.lTime - Gate::kEra);
    const auto mended = m_gate.Pass(old, m_now);
    ASSERT_TRUE(mended);
    EXPECT_EQ(mended->lTime, kStart + 1);
}

// The first fixes came with the old time, and then the receiver learnt the right one.
TEST_F(GateTest, ReceiverThatMendsItself_IsNotSetBack) {
    Fix old = At(0, 0);
    old.lTime = static_cast<std::int32_t>(old.lTime - Gate::kEra);
    EXPECT_TRUE(Passes(old));
    std::optional<Fix> last;
    for (int second = 1; second <= Gate::kAgreeing; ++second) last = m_gate.Pass(At(second, 0), m_now);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->lTime, kStart + Gate::kAgreeing);
    EXPECT_EQ(m_gate.Counts().mended, 0u);
}

// A log of another year is no rollover.
TEST_F(GateTest, OldLog_KeepsItsTime) {
    m_now = kStart + std::int64_t{700'000'000};
    const auto fix = m_gate.Pass(At(0, 0), m_now);
    ASSERT_TRUE(fix);
    EXPECT_EQ(fix->lTime, kStart);
}

TEST_F(GateTest, Reasons_AreNamedWithTheirCounts) {
    Passes(At(10, 0));
    Passes(At(9, 0));
    Passes(At(11, 50'000));
    Passes(At(11, 0, 99));
    EXPECT_EQ(RefusedByReason(m_gate.Counts()), "1 HDOP above the limit, 1 time back, 1 speed above the limit");
}

}  // namespace
}  // namespace host
