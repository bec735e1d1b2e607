// Length and signed area of lists of points.
#include <algorithm>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/support/seed.h"
#include "tests/track/geodesy_reference.h"
#include "track/geodesy.h"

namespace {

constexpr double kMetresPerDegree = 111120.0;
constexpr double kSquareDegree = 12392029030.466246;  // a radius of 6378137 m, unlike the one of the lengths

// One degree by one degree, counterclockwise with north up, from its south-west corner.
Points SquareAt(double latitude, double longitude) {
    return {At(latitude, longitude), At(latitude, longitude + 1), At(latitude + 1, longitude + 1),
            At(latitude + 1, longitude)};
}

// The fixes are close together or far apart.
Points RouteAnywhere(std::size_t count, std::mt19937& random) {
    constexpr double kReaches[] = {0.05, 0.05, 1e-3, 1e-6, 5};
    const double latitude = Between(-80, 80, random), longitude = Between(-180, 180, random);
    return AnyRoute(count, latitude, longitude, kReaches[count % std::size(kReaches)], random);
}

Points Reversed(Points pts) {
    std::reverse(pts.begin(), pts.end());
    return pts;
}

}  // namespace

TEST(Length, BelowTwoPoints_IsZero) {
    EXPECT_EQ(AidCalLength({}), 0.0);
    EXPECT_EQ(AidCalLength({At(47, 11)}), 0.0);
}

TEST(Length, TwoPoints_IsTheDistanceBetweenThem) {
    EXPECT_NEAR(AidCalLength({At(0, 0), At(0, 1)}), kMetresPerDegree, 1e-9);
}

TEST(Length, ThereAndBack_CountsBothWays) {
    EXPECT_NEAR(AidCalLength({At(0, 0), At(0, 1), At(0, 0)}), 2 * kMetresPerDegree, 1e-9);
}

TEST(Length, AcrossTheDateLine_IsTheShortWay) {
    EXPECT_NEAR(AidCalLength({At(0, 179), At(0, 180), At(0, -179)}), 2 * kMetresPerDegree, 1e-6);
}

// The two orders differ in the last bits; stored lengths hold those of the later point.
TEST(Length, EveryLeg_IsMeasuredFromTheLaterPoint) {
    std::mt19937 random(Seed(111));
    int differing = 0;
    for (int round = 0; round < 1000; ++round) {
        const Points leg = AnyRoute(2, 47, 11, 0.01, random);
        ASSERT_EQ(AidCalLength(leg), reference::Distance(leg[1], leg[0])) << "seed 111, round " << round;
        if (reference::Distance(leg[1], leg[0]) != reference::Distance(leg[0], leg[1])) ++differing;
    }
    EXPECT_GT(differing, 10) << "the legs drawn do not tell the two orders apart";
}

TEST(Length, AnyList_EveryBitIsAsDescribed) {
    std::mt19937 random(Seed(112));
    for (std::size_t count = 0; count < 300; ++count) {
        const Points route = RouteAnywhere(count, random);
        ASSERT_EQ(AidCalLength(route), reference::Length(route)) << "seed 112, " << count << " points";
    }
}

TEST(Area, BelowThreePoints_IsZero) {
    EXPECT_EQ(AidCalArea({}), 0.0);
    EXPECT_EQ(AidCalArea({At(47, 11)}), 0.0);
    EXPECT_EQ(AidCalArea({At(47, 11), At(48, 12)}), 0.0);
}

TEST(Area, SquareDegreeFromTheEquator_IsTheAreaConstant) {
    EXPECT_NEAR(AidCalArea(SquareAt(0, 0)), kSquareDegree, 1e-3);
    EXPECT_NEAR(AidCalArea(SquareAt(0, 100)), kSquareDegree, 1e-3);
}

TEST(Area, FirstPointsLatitude_ScalesTheWhole) {
    EXPECT_NEAR(AidCalArea(SquareAt(60, 24)) / kSquareDegree, 0.5, 1e-9);
    const Points square = SquareAt(60, 24);
    const Points fromTheNorth{square[2], square[3], square[0], square[1]};
    EXPECT_NEAR(AidCalArea(fromTheNorth) / kSquareDegree, std::cos(61 * reference::kDegToRad), 1e-9);
}

TEST(Area, Counterclockwise_IsPositive) { EXPECT_GT(AidCalArea(SquareAt(10, 10)), 0); }

TEST(Area, ReversedOrder_FlipsTheSign) {
    const Points triangle{At(10, 10), At(12, 11), At(10, 12)};
    EXPECT_LT(AidCalArea(triangle), 0);
    EXPECT_NEAR(AidCalArea(Reversed(triangle)), -AidCalArea(triangle), 1e-3);
}

TEST(Area, ClosedByHand_IsTheSameAsLeftOpen) {
    Points closed = SquareAt(20, 30);
    closed.push_back(closed.front());
    EXPECT_NEAR(AidCalArea(closed), AidCalArea(SquareAt(20, 30)), 1e-2);
}

TEST(Area, LineThereAndBack_EnclosesNothing) { EXPECT_EQ(AidCalArea({At(1, 2), At(3, 4), At(1, 2)}), 0.0); }

TEST(Area, AnyList_EveryBitIsAsDescribed) {
    std::mt19937 random(Seed(113));
    for (std::size_t count = 0; count < 300; ++count) {
        const Points route = RouteAnywhere(count, random);
        ASSERT_EQ(AidCalArea(route), reference::SignedArea(route)) << "seed 113, " << count << " points";
    }
}
