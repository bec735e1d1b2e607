// Key points: where the motion starts, stops or turns, and one about every ten seconds of movement.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/seed.h"
#include "tests/track/track_fixture.h"

namespace {

using Indices = std::vector<std::size_t>;

// A drive, fix by fix: each is a second later than the one before, 0.001 degrees further east, with the same
// course and speed, unless told otherwise.
class Drive {
 public:
    Drive& Fix(float course = 90, double speed = 10) { return After(1, course, speed); }
    Drive& After(std::int32_t seconds, float course = 90, double speed = 10) {
        return Put(m_pts.empty() ? 0 : m_pts.back().lTime + seconds, 0.001, course, speed);
    }
    Drive& Fixes(int count) {
        while (count-- > 0) Fix();
        return *this;
    }
    // A fix at the place of the one before.
    Drive& SamePlace(std::int32_t seconds, float course = 90, double speed = 10) {
        return Put(m_pts.back().lTime + seconds, 0, course, speed);
    }
    Drive& Stand(std::int32_t seconds = 1, float course = 90) { return SamePlace(seconds, course, 0.0); }
    Drive& Put(std::int32_t time, double degreesEast, float course, double speed) {
        TckPt fix = At(47, m_pts.empty() ? 11 : m_pts.back().dLongitude + degreesEast, time);
        fix.fCourse = course;
        fix.dSpeed = speed;
        m_pts.push_back(fix);
        return *this;
    }
    TckPt& Last() { return m_pts.back(); }
    const Points& Pts() const { return m_pts; }

 private:
    Points m_pts;
};

Points KeysOf(const Points& pts) {
    Points keys;
    TrackOf(pts).GetKeyPtList(keys);
    return keys;
}

Points Chosen(const Points& pts, const Indices& indices) {
    Points chosen;
    for (const std::size_t i : indices) chosen.push_back(pts[i]);
    return chosen;
}

void ExpectKeys(const Drive& drive, const Indices& expected) {
    EXPECT_EQ(KeysOf(drive.Pts()), Chosen(drive.Pts(), expected));
}

// The choice, plainly as described.
class DescribedChoice {
 public:
    explicit DescribedChoice(const Points& pts) : m_pts(pts), m_ref(pts[0]) {
        for (std::size_t i = 1; i < pts.size(); ++i)
            if (IsKey(pts[i])) {
                m_keys.push_back(i);
                m_ref = pts[i];
            }
    }
    Points Result() const {
        Indices all{0};
        all.insert(all.end(), m_keys.begin(), m_keys.end());
        if (all.back() != m_pts.size() - 1) all.push_back(m_pts.size() - 1);
        return Chosen(m_pts, all);
    }

 private:
    bool IsKey(const TckPt& cur) {
        const bool stands = cur.dSpeed == 0.0;
        if (stands != m_stopped) {
            m_stopped = stands;
            return true;
        }
        const double turn = std::fabs(cur.fCourse - m_ref.fCourse);
        const bool moved =
            std::fabs(cur.dLongitude - m_ref.dLongitude) + std::fabs(cur.dLatitude - m_ref.dLatitude) > 0.00001;
        if (turn >= 6.0) {
            if (std::fabs(turn - 180.0) < 1.0) return false;
            if (moved) return true;
        }
        return static_cast<double>(cur.lTime) - static_cast<double>(m_ref.lTime) >= 10.0 && moved;
    }

    const Points& m_pts;
    TckPt m_ref;
    bool m_stopped = false;
    Indices m_keys;
};

template <typename Value>
Value OneOf(std::initializer_list<Value> values, std::mt19937& random) {
    return values.begin()[random() % values.size()];
}

// Routes that come near every threshold often.
Points RouteNearTheThresholds(std::size_t count, std::mt19937& random) {
    Drive drive;
    for (std::size_t i = 0; i < count; ++i)
        drive.Put(static_cast<std::int32_t>(i) * OneOf({1, 2, 5, 10}, random),
                  OneOf({0.0, 0.000009, 0.00001, 0.000011, -0.001}, random),
                  OneOf({0.0F, 5.999F, 6.0F, 178.9F, 179.0F, 179.5F, 181.0F, 181.1F, 359.0F}, random),
                  OneOf({0.0, 3.0, 3.0, 3.0, -0.0}, random));
    return drive.Pts();
}

}  // namespace

TEST(KeyPoints, EmptyTrack_LeavesTheCallersListAlone) {
    Points list(3, At(1, 2, 3));
    OpenTrack().GetKeyPtList(list);
    EXPECT_EQ(list, Points(3, At(1, 2, 3)));
}

TEST(KeyPoints, AnyTrack_ReplacesTheCallersList) {
    const Drive drive = Drive().Fixes(2);
    Points list(3, At(1, 2, 3));
    TrackOf(drive.Pts()).GetKeyPtList(list);
    EXPECT_EQ(list, drive.Pts());
}

TEST(KeyPoints, OnePoint_IsThatPoint) { ExpectKeys(Drive().Fix(), {0}); }

TEST(KeyPoints, OneStandingPoint_IsThatPoint) { ExpectKeys(Drive().Fix(90, 0.0), {0}); }

TEST(KeyPoints, TwoPoints_AreBoth) { ExpectKeys(Drive().Fixes(2), {0, 1}); }

TEST(KeyPoints, StraightDrive_IsOneEveryTenSeconds) { ExpectKeys(Drive().Fixes(35), {0, 10, 20, 30, 34}); }

TEST(KeyPoints, LastPointThatIsAKeyItself_IsNotThereTwice) { ExpectKeys(Drive().Fixes(21), {0, 10, 20}); }

TEST(KeyPoints, ShortStraightDrive_IsItsEnds) { ExpectKeys(Drive().Fixes(10), {0, 9}); }

TEST(KeyPoints, TimeTest_StartsAgainAtEveryKey) {
    ExpectKeys(Drive().Fixes(5).Fix(120).After(9, 120).After(1, 120).Fix(120), {0, 5, 7, 8});
}

TEST(KeyPoints, TenSecondsWithoutMovement_IsNoKey) {
    ExpectKeys(Drive().Fix().SamePlace(10).SamePlace(10).SamePlace(1), {0, 3});
}

TEST(KeyPoints, TenSecondsBackInTime_IsNoKey) { ExpectKeys(Drive().Fix().After(-20).Fix(), {0, 2}); }

TEST(KeyPoints, TimesAtTheEndsOf32Bits_AreComparedWithoutOverflow) {
    Drive drive;
    drive.Put(INT32_MIN, 0, 90, 10).Put(INT32_MAX, 0.001, 90, 10).Put(INT32_MIN, 0.001, 90, 10);
    drive.Put(INT32_MIN, 0.001, 90, 10);
    ExpectKeys(drive, {0, 1, 3});
}

TEST(KeyPoints, Stop_IsAKeyAndSoIsTheFirstMovingFix) {
    ExpectKeys(Drive().Fixes(3).Stand().Stand().Fix().Fix(), {0, 3, 5, 6});
}

TEST(KeyPoints, StandingAnyTime_IsOneKey) {
    ExpectKeys(Drive().Fixes(2).Stand(5).Stand(60).Stand(60).Stand(1), {0, 2, 5});
}

TEST(KeyPoints, DriftWhileStanding_IsJudgedByTimeAndCourse) {
    Drive drive = Drive().Fixes(2).Stand();
    drive.Put(20, 0.001, 90, 0.0).Put(21, 0.001, 120, 0.0).Put(22, 0.001, 120, 0.0);
    ExpectKeys(drive, {0, 2, 3, 4, 5});
}

TEST(KeyPoints, FirstPointStanding_DoesNotCountAsStopped) {
    ExpectKeys(Drive().Fix(90, 0.0).Stand().Stand(), {0, 1, 2});
    ExpectKeys(Drive().Fix(90, 0.0).Fix().Fix().Fix(), {0, 3});
}

TEST(KeyPoints, NegativeZeroSpeed_IsStanding) {
    ExpectKeys(Drive().Fixes(2).Fix(90, -0.0).Fix(90, -0.0).Fix().Fix(), {0, 2, 4, 5});
}

TEST(KeyPoints, AnySpeedButZero_IsMoving) {
    ExpectKeys(Drive().Fixes(2).Fix(90, 1e-300).Fix(90, -5).Fix(), {0, 4});
}

TEST(KeyPoints, StopAndStart_AreKeysWithoutMovement) {
    ExpectKeys(Drive().Fix().Stand(0).SamePlace(0).SamePlace(0), {0, 1, 2, 3});
}

TEST(KeyPoints, TurnOfSixDegrees_IsAKey) { ExpectKeys(Drive().Fixes(2).Fix(96).Fix(96), {0, 2, 3}); }

TEST(KeyPoints, TurnToTheOtherSide_IsAKey) { ExpectKeys(Drive().Fixes(2).Fix(84).Fix(84), {0, 2, 3}); }

TEST(KeyPoints, TurnJustBelowSixDegrees_IsNone) {
    ExpectKeys(Drive().Fixes(2).Fix(95.99F).Fix(95.99F), {0, 3});
}

TEST(KeyPoints, SlowTurn_IsMeasuredFromTheLastKey) {
    ExpectKeys(Drive().Fix(90).Fix(92).Fix(94).Fix(96).Fix(98).Fix(100), {0, 3, 5});
}

TEST(KeyPoints, TurnWithoutMovement_IsNone) {
    ExpectKeys(Drive().Fix().SamePlace(1, 130).SamePlace(20, 170).SamePlace(1, 200), {0, 3});
}

TEST(KeyPoints, TurnWithoutMovement_IsKeptOnceItMoves) {
    ExpectKeys(Drive().Fix().SamePlace(1, 130).Fix(130).Fix(130), {0, 2, 3});
}

TEST(KeyPoints, Reversal_IsNone) {
    ExpectKeys(Drive().Fix(0).Fix(180).Fix(0), {0, 2});
    ExpectKeys(Drive().Fix(0).Fix(179.5F).Fix(0), {0, 2});
    ExpectKeys(Drive().Fix(0).Fix(180.9F).Fix(0), {0, 2});
}

TEST(KeyPoints, ReversalByTheEdgesOfTheBand_IsAKey) {
    ExpectKeys(Drive().Fix(0).Fix(179.0F).Fix(179.0F), {0, 1, 2});
    ExpectKeys(Drive().Fix(0).Fix(181.0F).Fix(181.0F), {0, 1, 2});
    ExpectKeys(Drive().Fix(0).Fix(178.9F).Fix(178.9F), {0, 1, 2});
}

TEST(KeyPoints, Reversal_IsNoneHoweverMuchTimePasses) {
    ExpectKeys(Drive().Fix(0).After(60, 180).After(60, 180).After(60, 180), {0, 3});
}

TEST(KeyPoints, TurnThroughNorth_IsNotWrapped) { ExpectKeys(Drive().Fix(359).Fix(1).Fix(1), {0, 1, 2}); }

TEST(KeyPoints, HalfTurnThroughNorth_IsMeasuredUnwrappedToo) {
    ExpectKeys(Drive().Fix(350).Fix(170).Fix(170), {0, 2});
    ExpectKeys(Drive().Fix(270).Fix(89).Fix(89), {0, 1, 2});
}

// 0.1 and 6.1 as floats are 5.99999990 apart; their single-precision difference rounds to 6.
TEST(KeyPoints, TurnIsComputedInSinglePrecision) {
    ASSERT_LT(static_cast<double>(6.1F) - static_cast<double>(0.1F), 6.0);
    ExpectKeys(Drive().Fix(0.1F).Fix(6.1F).Fix(6.1F), {0, 1, 2});
}

TEST(KeyPoints, Movement_IsTheSumOfBothDifferences) {
    Drive together = Drive().Fix().SamePlace(10).SamePlace(1);
    Points pts = together.Pts();
    pts[1].dLatitude += 0.000006;
    pts[1].dLongitude -= 0.000006;
    EXPECT_EQ(KeysOf(pts), pts) << "neither difference is enough alone";
    pts[1].dLatitude = pts[0].dLatitude;
    EXPECT_EQ(KeysOf(pts), Chosen(pts, {0, 2}));
}

TEST(KeyPoints, Movement_MustExceedTheThreshold) {
    Points pts{At(0, 0, 0), At(0, 0.00001, 10), At(0, 0, 11)};
    EXPECT_EQ(KeysOf(pts), Chosen(pts, {0, 2}));
    pts[1].dLongitude = 0.0000100001;
    EXPECT_EQ(KeysOf(pts), pts);
}

TEST(KeyPoints, AllBytesOfTheChosenPoints_AreCopied) {
    Drive drive = Drive().Fixes(2);
    drive.Last().dAltitude = 77.5;
    for (unsigned char& byte : drive.Last().reserved) byte = 0xA5;
    ExpectKeys(drive, {0, 1});
}

TEST(KeyPoints, TheTrackItself_StaysAsItWas) {
    OpenTrack track = TrackRemembering(Drive().Fixes(30).Pts(), {"n", 1, 2, 3, 4, 5, 6});
    const std::string before = track.Stream();
    Points keys;
    track.GetKeyPtList(keys);
    EXPECT_EQ(track.Stream(), before);
    EXPECT_EQ(track.GetLength(), 5.0);
}

TEST(KeyPoints, AnyRoute_AreThoseOfTheDescription) {
    std::mt19937 random(Seed(151));
    for (std::size_t round = 0; round < 3000; ++round) {
        const Points route = RouteNearTheThresholds(1 + round % 40, random);
        ASSERT_EQ(KeysOf(route), DescribedChoice(route).Result()) << "seed 151, round " << round;
    }
}
