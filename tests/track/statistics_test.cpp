// CTrack: length, area and times, computed, cached and carried along point by point.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/seed.h"
#include "tests/track/geodesy_reference.h"
#include "tests/track/track_fixture.h"
#include "track/geodesy.h"

namespace {

// A counterclockwise triangle in the north, so that neither length, area nor times are zero.
const Points kTriangle{At(47.0, 11.0, 1000), At(47.0, 11.2, 1010), At(47.1, 11.1, 1020)};
const TrackHeader kPlanted{"", 1, 0x00FF0000, 77, 88, 1234.5, 678.5};

Points Reversed(Points pts) {
    std::reverse(pts.begin(), pts.end());
    return pts;
}

// What is carried along by incremental appending, by its description.
struct CarriedStatistics {
    double length = 0.0;
    double area = 0.0;
    Points pts;

    void Append(const TckPt& fix) {
        if (!pts.empty()) length += reference::Distance(fix, pts.back());
        area = AreaWith(fix);
        pts.push_back(fix);
    }

 private:
    double AreaWith(const TckPt& fix) const {
        using namespace reference;
        if (pts.size() < 2) return 0.0;
        const double scale = CosLat(pts[0]);
        if (pts.size() == 2)
            return ((Cross(fix, pts[0]) + (Cross(pts[1], fix) + Cross(pts[0], pts[1]))) * 0.5 * kAreaFactor) *
                   scale;
        const double change = Cross(fix, pts[0]) - Cross(pts.back(), pts[0]) + Cross(pts.back(), fix);
        return (change * kHalfAreaFactor) * scale + area;
    }
};

}  // namespace

TEST(Statistics, GettersCompute_FromThePoints) {
    OpenTrack track = TrackOf(kTriangle);
    EXPECT_EQ(track.GetLength(), reference::Length(kTriangle));
    EXPECT_EQ(track.GetArea(), reference::SignedArea(kTriangle));
    EXPECT_EQ(track.GetStartTime(), 1000);
    EXPECT_EQ(track.GetEndTime(), 1020);
}

TEST(Statistics, GettersCache_WhatTheyComputed) {
    OpenTrack track = TrackOf(kTriangle);
    EXPECT_EQ(track.Header(), TrackHeader{}) << "appending computes nothing";
    const double length = track.GetLength();
    EXPECT_EQ(track.Header().length, length);
    const double area = track.GetArea();
    EXPECT_EQ(track.Header().area, area);
    const long start = track.GetStartTime(), end = track.GetEndTime();
    EXPECT_EQ(track.Header().startTime, start);
    EXPECT_EQ(track.Header().endTime, end);
}

TEST(Statistics, GettersLeaveTheFlagClear) {
    OpenTrack track = TrackOf(kTriangle);
    track.GetLength();
    track.TakeHeader(kPlanted);
    EXPECT_EQ(track.GetLength(), reference::Length(kTriangle));
}

TEST(Statistics, FlagSet_CachedValuesAreAnsweredAsTheyAre) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    EXPECT_EQ(track.GetLength(), 1234.5);
    EXPECT_EQ(track.GetArea(), 678.5);
    EXPECT_EQ(track.GetStartTime(), 77);
    EXPECT_EQ(track.GetEndTime(), 88);
}

TEST(Statistics, FlagSet_CachedZeroIsComputedAnew) {
    OpenTrack track = TrackRemembering(kTriangle, TrackHeader{});
    EXPECT_EQ(track.GetLength(), reference::Length(kTriangle));
    EXPECT_EQ(track.GetArea(), reference::SignedArea(kTriangle));
    EXPECT_EQ(track.GetStartTime(), 1000);
    EXPECT_EQ(track.GetEndTime(), 1020);
}

TEST(Statistics, FlagSet_EachCachedZeroIsComputedForItself) {
    OpenTrack track = TrackRemembering(kTriangle, {"", 1, 0, 0, 88, 0.0, 678.5});
    EXPECT_EQ(track.GetLength(), reference::Length(kTriangle));
    EXPECT_EQ(track.GetArea(), 678.5);
    EXPECT_EQ(track.GetStartTime(), 1000);
    EXPECT_EQ(track.GetEndTime(), 88);
}

TEST(Statistics, FlagClear_CachedValuesAreComputedAnew) {
    OpenTrack track = TrackOf(kTriangle);
    track.TakeHeader(kPlanted);
    EXPECT_EQ(track.GetLength(), reference::Length(kTriangle));
    EXPECT_EQ(track.GetArea(), reference::SignedArea(kTriangle));
    EXPECT_EQ(track.GetStartTime(), 1000);
    EXPECT_EQ(track.GetEndTime(), 1020);
}

TEST(Statistics, Area_IsTheMagnitudeInEitherSense) {
    OpenTrack clockwise = TrackOf(Reversed(kTriangle));
    EXPECT_LT(reference::SignedArea(Reversed(kTriangle)), 0);
    EXPECT_EQ(clockwise.GetArea(), -reference::SignedArea(Reversed(kTriangle)));
    EXPECT_EQ(clockwise.GetArea(), clockwise.Header().area);
}

// The sign shows in the next deletion, which starts from the cached area.
TEST(Statistics, Area_IsCachedWithItsSign) {
    const Points clockwise{At(10, 10), At(11, 10), At(11, 11), At(10, 11)};
    OpenTrack track = TrackOf(clockwise);
    track.GetArea();
    track.DeletePoint(3);
    EXPECT_NEAR(track.GetArea() / AidCalArea({At(10, 10), At(11, 11), At(11, 10)}), 1.0, 1e-9);
}

TEST(Statistics, NegativeCachedLengthOrTime_IsAnsweredAsItIs) {
    OpenTrack track = TrackRemembering(kTriangle, {"", 1, 0, -5, -3, -1.0, 2.0});
    EXPECT_EQ(track.GetLength(), -1.0);
    EXPECT_EQ(track.GetStartTime(), -5);
    EXPECT_EQ(track.GetEndTime(), -3);
}

TEST(Times, OnlyTheEndPointsCount) {
    OpenTrack track = TrackOf({At(0, 0, 50), At(0, 1, 10), At(0, 2, 99), At(0, 3, 60)});
    EXPECT_EQ(track.GetStartTime(), 50);
    EXPECT_EQ(track.GetEndTime(), 60);
}

TEST(Times, BackwardTrack_HasItsTrueStartAndEnd) {
    OpenTrack track = TrackOf({At(0, 0, 60), At(0, 1, 55), At(0, 2, 50)});
    EXPECT_EQ(track.GetStartTime(), 50);
    EXPECT_EQ(track.GetEndTime(), 60);
}

TEST(Times, OnePoint_IsBothStartAndEnd) {
    OpenTrack track = TrackOf({At(0, 0, 42)});
    EXPECT_EQ(track.GetStartTime(), 42);
    EXPECT_EQ(track.GetEndTime(), 42);
}

TEST(Times, Before1970_AreNegativeOnEverySystem) {
    OpenTrack track = TrackOf({At(0, 0, INT32_MIN), At(0, 1, -1)});
    EXPECT_EQ(track.GetStartTime(), -2147483648L);
    EXPECT_EQ(track.GetEndTime(), -1);
}

TEST(Times, FarApart_AreComparedWithoutOverflow) {
    OpenTrack track = TrackOf({At(0, 0, INT32_MAX), At(0, 1, INT32_MIN)});
    EXPECT_EQ(track.GetStartTime(), -2147483648L);
    EXPECT_EQ(track.GetEndTime(), 2147483647L);
}

TEST(Calculate, FillsTheCacheAndSetsTheFlag) {
    OpenTrack track = TrackOf(kTriangle);
    track.Calculate(false);
    EXPECT_EQ(track.Header(), (TrackHeader{"", 1, 0x00FF0000, 1000, 1020, reference::Length(kTriangle),
                                           reference::SignedArea(kTriangle)}));
    track.TakeHeader(kPlanted);
    EXPECT_EQ(track.GetLength(), 1234.5);
}

TEST(Calculate, NotForced_LeavesAValidCacheAlone) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.Calculate(false);
    EXPECT_EQ(track.Header(), kPlanted);
}

TEST(Calculate, Forced_ComputesInAnyCase) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.Calculate(true);
    EXPECT_EQ(track.Header().length, reference::Length(kTriangle));
    EXPECT_EQ(track.Header().startTime, 1000);
}

TEST(Calculate, EmptyTrack_IsAllZero) {
    OpenTrack track;
    track.TakeHeader(kPlanted);
    track.Calculate(true);
    EXPECT_EQ(track.Header(), TrackHeader{});
}

TEST(Calculate, AsksTheVirtualGettersAreaFirst) {
    class Listening : public CTrack {
     public:
        double GetArea() override { return Heard("area"); }
        double GetLength() override { return Heard("length"); }
        long GetStartTime() override { return Heard("start"); }
        long GetEndTime() override { return Heard("end"); }
        std::string heard;

     private:
        int Heard(const char* what) {
            heard += std::string(what) + ' ';
            return 0;
        }
    } track;
    track.Calculate(true);
    EXPECT_EQ(track.heard, "area length start end ");
}

TEST(AppendPoint, Plain_ClearsTheFlag) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.AppendPt(At(47.2, 11, 1030), false);
    EXPECT_EQ(track.Header(), kPlanted) << "nothing is computed";
    EXPECT_EQ(track.GetEndTime(), 1030);
    EXPECT_EQ(track.GetLength(), reference::Length(track.GetPtList()));
}

TEST(AppendPoint, KeepsAllBytesOfThePoint) {
    std::mt19937 random(Seed(121));
    const Points any{AnyBytes(random), AnyBytes(random)};
    OpenTrack track;
    track.AppendPt(any[0], false);
    track.AppendPt(any[1], false);
    EXPECT_EQ(track.GetPtList(), any);
}

TEST(AppendPoint, OneOfTheTracksOwn_IsAppended) {
    OpenTrack track = TrackOf(kTriangle);
    for (int i = 0; i < 100; ++i) track.AppendPt(track.GetPtList().front(), i % 2 == 0);
    EXPECT_EQ(track.GetPtCount(), 103u);
    EXPECT_EQ(track.GetPtList().back(), kTriangle.front());
}

TEST(IncrementalAppend, ThreePoints_GiveWhatCalculateGives) {
    OpenTrack track;
    track.Append(kTriangle, true);
    const TrackHeader carried = track.Header();
    track.Calculate(true);
    EXPECT_NEAR(carried.length, track.GetLength(), 1e-6);
    EXPECT_NEAR(carried.area / track.GetArea(), 1.0, 1e-12);
    EXPECT_EQ(carried.startTime, 1000);
    EXPECT_EQ(carried.endTime, 1020);
}

TEST(IncrementalAppend, SetsTheFlag) {
    OpenTrack track;
    track.Append(kTriangle, true);
    track.TakeHeader(kPlanted);
    EXPECT_EQ(track.GetLength(), 1234.5);
}

TEST(IncrementalAppend, RefreshesBothTimes) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.AppendPt(At(47, 11, 900), true);
    EXPECT_EQ(track.Header().startTime, 900);
    EXPECT_EQ(track.Header().endTime, 1000);
}

TEST(IncrementalAppend, FirstAndSecondPoint_EncloseNothing) {
    OpenTrack track;
    track.AppendPt(At(0, 0), true);
    EXPECT_EQ(track.Header().length, 0.0);
    track.AppendPt(At(0, 1), true);
    EXPECT_EQ(track.Header().area, 0.0);
    EXPECT_NEAR(track.Header().length, 111120, 1e-9);
}

TEST(IncrementalAppend, ThirdPoint_ComputesTheTriangleWhateverWasCached) {
    OpenTrack track = TrackRemembering({kTriangle[0], kTriangle[1]}, kPlanted);
    track.AppendPt(kTriangle[2], true);
    EXPECT_NEAR(track.Header().area / reference::SignedArea(kTriangle), 1.0, 1e-12);
}

TEST(IncrementalAppend, StaleCache_IsAddedToAsItStands) {
    OpenTrack track = TrackOf(kTriangle);
    track.TakeHeader({"", 1, 0, 5, 6, 1000.0, 0.0});
    track.AppendPt(At(47.1, 11.1, 1030), true);
    EXPECT_EQ(track.Header().length, 1000.0) << "the added leg has no length";
    EXPECT_EQ(track.GetLength(), 1000.0) << "and the sum counts as valid";
}

TEST(IncrementalAppend, AfterClear_GoesOnFromTheKeptLength) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.clear();
    track.AppendPt(At(1, 1, 5), true);
    EXPECT_EQ(track.Header(), (TrackHeader{"", 1, 0x00FF0000, 5, 5, 1234.5, 0.0}));
    track.AppendPt(At(1, 1, 6), true);
    EXPECT_EQ(track.GetLength(), 1234.5);
}

TEST(IncrementalAppend, AnyRoute_EveryBitIsAsDescribed) {
    std::mt19937 random(Seed(122));
    for (int round = 0; round < 50; ++round) {
        const Points route = AnyRoute(60, Between(-80, 80, random), Between(-179, 179, random), 0.05, random);
        OpenTrack track;
        CarriedStatistics carried;
        for (const TckPt& fix : route) {
            track.AppendPt(fix, true);
            carried.Append(fix);
            ASSERT_EQ(track.Header().length, carried.length) << "seed 122, round " << round;
            ASSERT_EQ(track.Header().area, std::fabs(carried.area)) << "seed 122, round " << round;
        }
    }
}

TEST(IncrementalAppend, AnyRoute_AgreesWithTheFullComputation) {
    std::mt19937 random(Seed(123));
    for (int round = 0; round < 50; ++round) {
        const Points route = AnyRoute(200, Between(-60, 60, random), Between(-179, 179, random), 0.05, random);
        OpenTrack track;
        track.Append(route, true);
        const TrackHeader carried = track.Header();
        track.Calculate(true);
        ASSERT_NEAR(carried.length / track.GetLength(), 1.0, 1e-12) << "seed 123, round " << round;
        // Cross products of coordinates up to 180 lose about 1e-11 square degrees in 200 steps.
        ASSERT_NEAR(carried.area, track.GetArea(), 5.0) << "seed 123, round " << round;
        ASSERT_EQ(carried.startTime, track.GetStartTime());
        ASSERT_EQ(carried.endTime, track.GetEndTime());
    }
}

TEST(AppendTrack, AppendsItsPointsInOrderAndClearsTheFlag) {
    OpenTrack track = TrackRemembering({At(1, 1, 1)}, kPlanted);
    track.AppendPt(TrackOf(kTriangle));
    EXPECT_EQ(track.GetPtList(), (Points{At(1, 1, 1), kTriangle[0], kTriangle[1], kTriangle[2]}));
    EXPECT_EQ(track.Header(), kPlanted);
    EXPECT_EQ(track.GetEndTime(), 1020);
}

TEST(AppendTrack, EmptyTrack_ClearsTheFlagToo) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.AppendPt(OpenTrack());
    EXPECT_EQ(track.GetPtCount(), 3u);
    EXPECT_EQ(track.GetStartTime(), 1000);
}

TEST(AppendTrack, AsksTheOthersVirtualCount) {
    class CountsTwo : public CTrack {
     public:
        unsigned long GetPtCount() override { return 2; }
    } other;
    for (const TckPt& fix : kTriangle) other.AppendPt(fix, false);
    OpenTrack track;
    track.AppendPt(other);
    EXPECT_EQ(track.GetPtList(), (Points{kTriangle[0], kTriangle[1]}));
}

TEST(AppendTrack, ToItself_DoublesTheList) {
    OpenTrack track = TrackOf(kTriangle);
    track.AppendPt(track);
    Points doubled = kTriangle;
    doubled.insert(doubled.end(), kTriangle.begin(), kTriangle.end());
    EXPECT_EQ(track.GetPtList(), doubled);
}

TEST(Reverse, TurnsTheOrderRound) {
    OpenTrack track = TrackOf(kTriangle);
    track.Reverse();
    EXPECT_EQ(track.GetPtList(), Reversed(kTriangle));
}

TEST(Reverse, KeepsLengthAreaAndFlagAndRefreshesTheTimes) {
    OpenTrack track = TrackRemembering(kTriangle, kPlanted);
    track.Reverse();
    EXPECT_EQ(track.Header(), (TrackHeader{"", 1, 0x00FF0000, 1000, 1020, 1234.5, 678.5}));
    EXPECT_EQ(track.GetLength(), 1234.5) << "the flag is still set";
}

TEST(Reverse, ClearFlag_StaysClear) {
    OpenTrack track = TrackOf(kTriangle);
    track.TakeHeader(kPlanted);
    track.Reverse();
    EXPECT_EQ(track.Header(), (TrackHeader{"", 1, 0x00FF0000, 1000, 1020, 1234.5, 678.5}));
    EXPECT_EQ(track.GetLength(), reference::Length(Reversed(kTriangle)));
}

// The area's sign is not flipped: mending it after a deletion starts from the sense before.
TEST(Reverse, CachedAreaKeepsItsSign) {
    const Points square{At(0, 0), At(0, 1), At(1, 1), At(1, 0)};
    OpenTrack track = TrackOf(square);
    track.Calculate(true);
    track.Reverse();
    track.DeletePoint(3);
    EXPECT_NEAR(track.Header().area / AidCalArea(square), 1.5, 1e-3)
        << "one and a half squares, not half of one";
}

TEST(Reverse, EmptyTrack_StaysEmptyWithoutTimes) {
    OpenTrack track = TrackRemembering({}, kPlanted);
    track.Reverse();
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_EQ(track.Header().startTime, 0);
    EXPECT_EQ(track.Header().endTime, 0);
}
