// CTrack: deleting points, with length and area mended from their cached values instead of computed anew.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/seed.h"
#include "tests/track/geodesy_reference.h"
#include "tests/track/track_fixture.h"
#include "track/geodesy.h"

namespace {

// The rule for one point, plainly as described: what is cached, the points, and the deletion of one.
struct MendedStatistics {
    double length;
    double area;  // signed
    Points pts;

    void Delete(std::size_t index) {
        const TckPt gone = pts[index];
        const double oldScale = reference::CosLat(pts[0]);
        pts.erase(pts.begin() + static_cast<std::ptrdiff_t>(index));
        if (pts.size() < 2) {
            length = 0;
            area = 0;
        } else if (pts.size() == 2) {
            length = reference::Distance(pts[0], pts[1]);
            area = 0;
        } else {
            MendLength(gone, index);
            MendArea(gone, index, oldScale);
        }
    }

 private:
    void MendLength(const TckPt& gone, std::size_t index) {
        using reference::Distance;
        const std::size_t m = pts.size();
        if (index == 0)
            length -= Distance(pts[0], gone);
        else if (index == m)
            length -= Distance(pts[m - 1], gone);
        else
            length = length - Distance(pts[index], gone) - Distance(pts[index - 1], gone) +
                     Distance(pts[index - 1], pts[index]);
    }
    void MendArea(const TckPt& gone, std::size_t index, double oldScale) {
        using reference::Cross;
        const std::size_t m = pts.size();
        const TckPt& prev = pts[(index + m - 1) % m];
        const TckPt& next = pts[index % m];
        double raw = (area / oldScale) * reference::kPerAreaFactor * 2.0;
        raw = (raw - Cross(prev, gone) - Cross(gone, next) + Cross(prev, next)) * 0.5;
        area = raw * reference::kAreaFactor * reference::CosLat(pts[0]);
    }
};

MendedStatistics CalculatedFrom(const Points& pts) {
    return {reference::Length(pts), reference::SignedArea(pts), pts};
}

void ExpectSame(OpenTrack& track, const MendedStatistics& expected) {
    ASSERT_EQ(track.GetPtList(), expected.pts);
    ASSERT_EQ(track.Header().length, expected.length);
    ASSERT_EQ(track.Header().area, std::fabs(expected.area));
}

OpenTrack Calculated(const Points& pts) {
    OpenTrack track = TrackOf(pts);
    track.Calculate(true);
    return track;
}

const Points kFive{At(47.0, 11.0, 10), At(47.0, 11.2, 20), At(47.1, 11.3, 30), At(47.2, 11.1, 40),
                   At(47.1, 10.9, 50)};
const TrackHeader kPlanted{"", 1, 0x00FF0000, 77, 88, 1234.5, 678.5};

}  // namespace

TEST(DeletePoint, IndexOutOfRange_IsFalseAndChangesNothing) {
    OpenTrack track = TrackRemembering(kFive, kPlanted);
    const std::string before = track.Stream();
    for (const int index : {-1, 5, 6, INT32_MIN, INT32_MAX}) EXPECT_FALSE(track.DeletePoint(index)) << index;
    EXPECT_EQ(track.Stream(), before);
}

TEST(DeletePoint, EmptyTrack_IsFalse) {
    OpenTrack track;
    EXPECT_FALSE(track.DeletePoint(0));
    EXPECT_FALSE(track.DeletePoint(0, 0));
}

TEST(DeleteRange, OutOfRangeOrTurnedRound_IsFalseAndChangesNothing) {
    OpenTrack track = TrackRemembering(kFive, kPlanted);
    const std::string before = track.Stream();
    EXPECT_FALSE(track.DeletePoint(3, 2));
    EXPECT_FALSE(track.DeletePoint(-1, 0));
    EXPECT_FALSE(track.DeletePoint(0, 5));
    EXPECT_FALSE(track.DeletePoint(5, 5));
    EXPECT_FALSE(track.DeletePoint(-2, -1));
    EXPECT_EQ(track.Stream(), before);
}

TEST(DeleteRange, RefusedCall_LeavesAClearFlagClear) {
    OpenTrack track = TrackOf(kFive);
    track.TakeHeader(kPlanted);
    track.DeletePoint(3, 2);
    EXPECT_EQ(track.GetStartTime(), 10);
}

TEST(DeletePoint, InTheMiddle_JoinsItsNeighbours) {
    OpenTrack track = Calculated(kFive);
    ASSERT_TRUE(track.DeletePoint(2));
    const Points left{kFive[0], kFive[1], kFive[3], kFive[4]};
    EXPECT_EQ(track.GetPtList(), left);
    EXPECT_NEAR(track.Header().length, AidCalLength(left), 1e-6);
    EXPECT_NEAR(track.Header().area / AidCalArea(left), 1.0, 1e-9);
}

TEST(DeletePoint, First_ScalesTheAreaAtTheNewFirst) {
    const Points tall{At(0, 0), At(60, 0), At(60, 1), At(0, 1)};
    OpenTrack track = Calculated(tall);
    ASSERT_TRUE(track.DeletePoint(0));
    const Points left{tall[1], tall[2], tall[3]};
    EXPECT_NEAR(track.Header().length, AidCalLength(left), 1e-6);
    EXPECT_NEAR(track.Header().area / std::fabs(AidCalArea(left)), 1.0, 1e-9);
}

TEST(DeletePoint, Last_TakesItsOneLegAway) {
    OpenTrack track = Calculated(kFive);
    ASSERT_TRUE(track.DeletePoint(4));
    const Points left(kFive.begin(), kFive.begin() + 4);
    EXPECT_NEAR(track.Header().length, AidCalLength(left), 1e-6);
    EXPECT_NEAR(track.Header().area / AidCalArea(left), 1.0, 1e-9);
}

TEST(DeletePoint, DownToTwo_IsTheirDistanceWithoutArea) {
    OpenTrack track = TrackRemembering({kFive[0], kFive[1], kFive[2]}, kPlanted);
    ASSERT_TRUE(track.DeletePoint(1));
    EXPECT_EQ(track.Header().length, reference::Distance(kFive[0], kFive[2])) << "nothing cached enters it";
    EXPECT_EQ(track.Header().area, 0.0);
}

TEST(DeletePoint, DownToOneAndNone_IsZero) {
    OpenTrack track = TrackRemembering({kFive[0], kFive[1]}, kPlanted);
    ASSERT_TRUE(track.DeletePoint(0));
    EXPECT_EQ(track.Header(), (TrackHeader{"", 1, 0x00FF0000, 20, 20, 0.0, 0.0}));
    ASSERT_TRUE(track.DeletePoint(0));
    EXPECT_EQ(track.Header(), TrackHeader{});
    EXPECT_EQ(track.GetPtCount(), 0u);
}

TEST(DeletePoint, RefreshesBothTimesFromTheNewEnds) {
    OpenTrack track = TrackRemembering(kFive, kPlanted);
    track.DeletePoint(0);
    EXPECT_EQ(track.Header().startTime, 20);
    EXPECT_EQ(track.Header().endTime, 50);
    track.DeletePoint(3);
    EXPECT_EQ(track.Header().endTime, 40);
}

TEST(DeletePoint, StaleCache_IsMendedAsItStands) {
    OpenTrack track = TrackOf(kFive);
    track.TakeHeader(kPlanted);
    MendedStatistics expected{1234.5, 678.5, kFive};
    track.DeletePoint(2);
    expected.Delete(2);
    ExpectSame(track, expected);
}

TEST(DeletePoint, SetsTheFlag) {
    OpenTrack track = TrackOf(kFive);
    track.DeletePoint(2);
    track.TakeHeader(kPlanted);
    EXPECT_EQ(track.GetLength(), 1234.5);
}

TEST(DeletePoint, AfterAnIncrementalAppend_GivesBackTheStatisticsBefore) {
    OpenTrack track = Calculated(kFive);
    const TrackHeader before = track.Header();
    track.AppendPt(At(47.05, 10.95, 60), true);
    track.DeletePoint(5);
    EXPECT_NEAR(track.Header().length, before.length, 1e-6);
    EXPECT_NEAR(track.Header().area / before.area, 1.0, 1e-9);
    EXPECT_EQ(track.Header().endTime, 50);
}

TEST(DeleteRange, OnePoint_IsThatPoint) {
    OpenTrack track = Calculated(kFive);
    ASSERT_TRUE(track.DeletePoint(1, 1));
    EXPECT_EQ(track.GetPtList(), (Points{kFive[0], kFive[2], kFive[3], kFive[4]}));
}

TEST(DeleteRange, WholeTrack_LeavesNothing) {
    OpenTrack track = Calculated(kFive);
    ASSERT_TRUE(track.DeletePoint(0, 4));
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_EQ(track.Header(), TrackHeader{});
}

TEST(DeleteRange, AnyRangeOfAFive_EveryBitIsThatOfDeletingDownwards) {
    for (int first = 0; first < 5; ++first) {
        for (int last = first; last < 5; ++last) {
            OpenTrack track = Calculated(kFive);
            MendedStatistics expected = CalculatedFrom(kFive);
            ASSERT_TRUE(track.DeletePoint(first, last));
            for (int index = last; index >= first; --index) expected.Delete(static_cast<std::size_t>(index));
            SCOPED_TRACE(std::to_string(first) + ".." + std::to_string(last));
            ExpectSame(track, expected);
        }
    }
}

TEST(DeleteRange, SetsTheFlag) {
    OpenTrack track = TrackOf(kFive);
    track.DeletePoint(1, 2);
    track.TakeHeader(kPlanted);
    EXPECT_EQ(track.GetLength(), 1234.5);
}

TEST(DeletePoint, AnyRouteAnyOrder_EveryBitIsAsDescribed) {
    std::mt19937 random(Seed(131));
    for (int round = 0; round < 100; ++round) {
        const Points route = AnyRoute(40, Between(-80, 80, random), Between(-179, 179, random), 0.05, random);
        OpenTrack track = Calculated(route);
        MendedStatistics expected = CalculatedFrom(route);
        while (!expected.pts.empty()) {
            const std::size_t index = random() % expected.pts.size();
            ASSERT_TRUE(track.DeletePoint(static_cast<int>(index)));
            expected.Delete(index);
            SCOPED_TRACE("seed 131, round " + std::to_string(round));
            ASSERT_NO_FATAL_FAILURE(ExpectSame(track, expected));
        }
    }
}

TEST(DeleteRange, AnyRouteAnyRange_EveryBitIsAsDescribed) {
    std::mt19937 random(Seed(132));
    for (int round = 0; round < 300; ++round) {
        const Points route = AnyRoute(30, Between(-80, 80, random), Between(-179, 179, random), 0.05, random);
        OpenTrack track = Calculated(route);
        MendedStatistics expected = CalculatedFrom(route);
        const int first = static_cast<int>(random() % 30);
        const int last = first + static_cast<int>(random() % static_cast<unsigned>(30 - first));
        ASSERT_TRUE(track.DeletePoint(first, last));
        for (int index = last; index >= first; --index) expected.Delete(static_cast<std::size_t>(index));
        SCOPED_TRACE("seed 132, round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(ExpectSame(track, expected));
    }
}

TEST(DeletePoint, AnyRouteHalved_AgreesWithTheFullComputation) {
    std::mt19937 random(Seed(133));
    for (int round = 0; round < 50; ++round) {
        const Points route = AnyRoute(200, Between(-60, 60, random), Between(-179, 179, random), 0.05, random);
        OpenTrack track = Calculated(route);
        for (int i = 0; i < 100; ++i) track.DeletePoint(static_cast<int>(random() % track.GetPtCount()));
        const TrackHeader mended = track.Header();
        track.Calculate(true);
        ASSERT_NEAR(mended.length / track.GetLength(), 1.0, 1e-9) << "seed 133, round " << round;
        ASSERT_NEAR(mended.area, track.GetArea(), 100.0) << "seed 133, round " << round;
    }
}

// Tens of thousands of points from the middle of a long recording, in the time of the tail moved once.
TEST(DeleteRange, LongTrack_KeepsHeadAndTail) {
    const std::size_t count = 50000;
    Points route;
    for (std::size_t i = 0; i < count; ++i)
        route.push_back(At(47, 11 + 1e-5 * static_cast<double>(i), static_cast<std::int32_t>(i)));
    OpenTrack track = Calculated(route);
    ASSERT_TRUE(track.DeletePoint(10, static_cast<int>(count) - 11));
    Points left(route.begin(), route.begin() + 10);
    left.insert(left.end(), route.end() - 10, route.end());
    EXPECT_EQ(track.GetPtList(), left);
    EXPECT_NEAR(track.GetLength(), AidCalLength(left), 1e-3);
}
