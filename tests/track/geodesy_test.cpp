// Distance and bearing between two positions, checked by hand-derived figures, by another formula in extended
// precision, and bit for bit. Lengths and areas of lists: tests/track/length_area_test.cpp.
#include "track/geodesy.h"

#include <cmath>
#include <iterator>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/support/rounds.h"
#include "tests/support/seed.h"
#include "tests/track/geodesy_reference.h"

namespace {

constexpr double kMetresPerDegree = 111120.0;  // 60 nautical miles

reference::Leg Leg(double lat1, double lon1, double lat2, double lon2, double bearingOffset = 0) {
    reference::Leg leg{-1, -1};
    CalDistance(lat1, lon1, lat2, lon2, bearingOffset, &leg.distance, &leg.bearing);
    return leg;
}

struct Direction {
    long double x, y, z;
};

Direction TowardsPosition(double latitude, double longitude) {
    const long double radians = std::numbers::pi_v<long double> / 180;
    const long double phi = latitude * radians, lambda = longitude * radians;
    return {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
}

// The angle between two directions from their cross and dot product, in degrees times the metres of a degree.
double DistanceByVectors(double lat1, double lon1, double lat2, double lon2) {
    const Direction a = TowardsPosition(lat1, lon1), b = TowardsPosition(lat2, lon2);
    const long double across = std::hypot(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
    const long double along = a.x * b.x + a.y * b.y + a.z * b.z;
    return static_cast<double>(std::atan2(across, along) * 180 / std::numbers::pi_v<long double> *
                               kMetresPerDegree);
}

}  // namespace

TEST(Distance, SamePointTwice_IsZeroWithBearingZero) {
    EXPECT_EQ(Leg(0, 0, 0, 0).distance, 0.0);
    EXPECT_EQ(Leg(0, 0, 0, 0).bearing, 0.0);
    EXPECT_NEAR(Leg(47.4, 11.2, 47.4, 11.2).distance, 0.0, 1e-9);
    EXPECT_EQ(Leg(47.4, 11.2, 47.4, 11.2).bearing, 0.0);
}

TEST(Distance, SamePointTwice_BearingIsTheOffset) { EXPECT_EQ(Leg(10, 20, 10, 20, 12.5).bearing, 12.5); }

TEST(Distance, OneDegree_IsSixtyNauticalMiles) {
    EXPECT_NEAR(Leg(0, 0, 0, 1).distance, kMetresPerDegree, 1e-9);
    EXPECT_NEAR(Leg(0, 0, 1, 0).distance, kMetresPerDegree, 1e-9);
    EXPECT_NEAR(Leg(0, 0, 0, -1).distance, kMetresPerDegree, 1e-9);
    EXPECT_NEAR(Leg(0, 0, -1, 0).distance, kMetresPerDegree, 1e-9);
}

TEST(Distance, AlongAParallel_ShrinksWithTheLatitude) {
    EXPECT_NEAR(Leg(60, 24, 60, 24.001).distance, 0.001 * kMetresPerDegree / 2, 1e-6);
}

TEST(Distance, AcrossTheDateLine_IsTheShortWay) {
    EXPECT_NEAR(Leg(0, 179.5, 0, -179.5).distance, kMetresPerDegree, 1e-6);
    EXPECT_NEAR(Leg(0, 179.5, 0, -179.5).bearing, 90, 1e-9);
    EXPECT_NEAR(Leg(0, -179.5, 0, 179.5).bearing, 270, 1e-9);
}

TEST(Distance, OverThePole_IsTheShortWay) {
    EXPECT_NEAR(Leg(89, -170, 89, 10).distance, 2 * kMetresPerDegree, 1e-6);
    EXPECT_NEAR(Leg(89, -170, 89, 10).bearing, 0, 1e-9);
}

TEST(Distance, Antipodes_AreHalfTheCircleApartWithBearingZero) {
    EXPECT_NEAR(Leg(0, 0, 0, 180).distance, 180 * kMetresPerDegree, 1e-6);
    EXPECT_EQ(Leg(0, 0, 0, 180).bearing, 0.0);
    EXPECT_NEAR(Leg(90, 0, -90, 0).distance, 180 * kMetresPerDegree, 1e-6);
    EXPECT_EQ(Leg(90, 0, -90, 0).bearing, 0.0);
}

// A bearing is a double times the degrees of a radian, so the last digits belong to the cut pi.
TEST(Bearing, DueNorthEastSouthWest_ShowTheCutPi) {
    EXPECT_EQ(Leg(0, 0, 1, 0).bearing, 0.0);
    EXPECT_EQ(Leg(0, 0, 0, 1).bearing, 90.0000000000001);
    EXPECT_EQ(Leg(0, 0, -1, 0).bearing, 180.0000000000002);
    EXPECT_EQ(Leg(0, 0, 0, -1).bearing, 269.99999999999994);
}

TEST(Bearing, Offset_IsAddedWithoutNormalising) {
    EXPECT_EQ(Leg(0, 0, 0, 1, 350).bearing, 90.0000000000001 + 350);
    EXPECT_EQ(Leg(0, 0, 0, 1, -100).bearing, 90.0000000000001 - 100);
    EXPECT_EQ(Leg(0, 0, 1, 0, 720).bearing, 720.0);
}

TEST(Bearing, Offset_LeavesTheDistanceAlone) {
    EXPECT_EQ(Leg(48, 11, 52, 13, 77).distance, Leg(48, 11, 52, 13).distance);
}

TEST(Bearing, BelowTheDegeneracyThreshold_IsZeroThoughTheDistanceIsNot) {
    const double justBelow = 5.72e-6;  // 0.6356 m; the threshold of 1e-7 rad is 0.6367 m
    for (const double side : {1.0, -1.0}) {
        EXPECT_EQ(Leg(0, 0, 0, side * justBelow).bearing, 0.0);
        EXPECT_EQ(Leg(0, 0, -justBelow, 0).bearing, 0.0);
        EXPECT_NEAR(Leg(0, 0, 0, side * justBelow).distance, 0.6356, 1e-4);
    }
}

TEST(Bearing, AboveTheDegeneracyThreshold_IsTheBearing) {
    const double justAbove = 5.74e-6;
    EXPECT_NEAR(Leg(0, 0, 0, justAbove).bearing, 90, 1e-9);
    EXPECT_NEAR(Leg(0, 0, 0, -justAbove).bearing, 270, 1e-9);
    EXPECT_NEAR(Leg(0, 0, -justAbove, 0).bearing, 180, 1e-9);
}

TEST(Bearing, OneComponentAboveTheThreshold_IsEnough) {
    EXPECT_NEAR(Leg(0, 0, 5.74e-6, 1e-7).bearing, 1.0, 0.01);
    EXPECT_NEAR(Leg(0, 0, 1e-7, 5.74e-6).bearing, 89.0, 0.01);
}

TEST(Bearing, LondonToNewYork_IsTheInitialOne) {
    EXPECT_NEAR(Leg(51.5, 0, 40.7, -74).bearing, 288.4, 0.1);
    EXPECT_NEAR(Leg(40.7, -74, 51.5, 0).bearing, 51.2, 0.1);
}

TEST(Distance, AnywhereOnEarth_AgreesWithTheVectorFormula) {
    std::mt19937 random(Seed(101));
    for (int round = 0; round < 20000; ++round) {
        const double lat1 = Between(-90, 90, random), lon1 = Between(-180, 180, random);
        const double lat2 = Between(-90, 90, random), lon2 = Between(-180, 180, random);
        ASSERT_NEAR(Leg(lat1, lon1, lat2, lon2).distance, DistanceByVectors(lat1, lon1, lat2, lon2), 1e-6)
            << "seed 101, round " << round;
    }
}

TEST(Distance, NeighbouringFixes_AgreeWithTheVectorFormula) {
    std::mt19937 random(Seed(102));
    for (int round = 0; round < 20000; ++round) {
        const double lat1 = Between(-85, 85, random), lon1 = Between(-180, 180, random);
        const double lat2 = lat1 + Between(-1e-3, 1e-3, random), lon2 = lon1 + Between(-1e-3, 1e-3, random);
        ASSERT_NEAR(Leg(lat1, lon1, lat2, lon2).distance, DistanceByVectors(lat1, lon1, lat2, lon2), 1e-7)
            << "seed 102, round " << round;
    }
}

TEST(Distance, AnywhereOnEarth_EveryBitIsAsDescribed) {
    constexpr double kReaches[] = {180, 1, 0.01, 1e-3, 1e-4, 1e-6};
    std::mt19937 random(Seed(103));
    for (int round = 0; round < Rounds(500000); ++round) {
        const double reach = kReaches[static_cast<std::size_t>(round) % std::size(kReaches)];
        const double lat1 = Between(-90, 90, random), lon1 = Between(-180, 180, random);
        const double lat2 = lat1 + Between(-reach, reach, random), lon2 = lon1 + Between(-reach, reach, random);
        const reference::Leg expected = reference::Between(lat1, lon1, lat2, lon2);
        const reference::Leg actual = Leg(lat1, lon1, lat2, lon2);
        ASSERT_EQ(actual.distance, expected.distance) << "seed 103, round " << round;
        ASSERT_EQ(actual.bearing, expected.bearing) << "seed 103, round " << round;
    }
}
