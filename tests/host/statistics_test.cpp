// Statistics of tracks whose figures can be worked out by hand: on the sphere of 60 nautical miles a degree, a
// degree of latitude is 111120 m.
#include "host/tracks/statistics.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/recorded_data.h"

namespace host {
namespace {

constexpr double kDegree = 111120;  // [m]
constexpr long kMorning = 1715500800;

// A fix on a meridian, so many metres north of the equator.
TckPt North(double metres, long time, double altitude = 0, double speed = 0) {
    TckPt fix{};
    fix.dLatitude = metres / kDegree;
    fix.dLongitude = 8;
    fix.dAltitude = altitude;
    fix.dSpeed = speed;
    fix.lTime = static_cast<std::int32_t>(time);
    return fix;
}

TckPt At(double latitude, double longitude) {
    TckPt fix{};
    fix.dLatitude = latitude;
    fix.dLongitude = longitude;
    return fix;
}

// A way north at walking pace, a fix every 10 m and 8 s, at these altitudes.
Points Walk(const std::vector<double>& altitudes) {
    Points points;
    for (std::size_t i = 0; i < altitudes.size(); ++i) {
        const auto step = static_cast<long>(i);
        points.push_back(North(10.0 * static_cast<double>(i), kMorning + 8 * step, altitudes[i]));
    }
    return points;
}

Elevation ElevationOfWalk(const std::vector<double>& altitudes) {
    return ComputeStatistics(Walk(altitudes)).elevation.value();
}

// From one altitude to another in so many steps, the last one included.
void GoTo(std::vector<double>& altitudes, double target, int steps) {
    const double from = altitudes.back();
    for (int i = 1; i <= steps; ++i) altitudes.push_back(from + (target - from) * i / steps);
}

TEST(Statistics, NoPoints_KnowNothing) {
    const Statistics s = ComputeStatistics({});
    EXPECT_EQ(s.points, 0u);
    EXPECT_EQ(s.length, 0);
    EXPECT_EQ(s.area, 0);
    EXPECT_FALSE(s.start || s.end || s.duration || s.movingTime || s.stoppedTime || s.unrecordedTime);
    EXPECT_FALSE(s.averageSpeed || s.movingSpeed || s.greatestSpeed || s.elevation || s.bounds);
    EXPECT_EQ(s.basis, "0 points; no times; no altitudes");
}

TEST(Statistics, OnePoint_IsAPlaceAndATime) {
    const Statistics s = ComputeStatistics({North(kDegree, kMorning, 400)});
    EXPECT_EQ(s.start, kMorning);
    EXPECT_EQ(s.end, kMorning);
    EXPECT_EQ(s.duration, 0);
    EXPECT_EQ(s.length, 0);
    EXPECT_FALSE(s.averageSpeed || s.movingSpeed || s.greatestSpeed);
    EXPECT_EQ(s.bounds, (Bounds{1, 8, 1, 8}));
    EXPECT_EQ(s.elevation->lowest, 400);
    EXPECT_EQ(s.elevation->ascent, 0);
    EXPECT_EQ(s.basis, "1 point");
}

TEST(Statistics, SteadyWay_HasOneSpeed) {
    const Statistics s =
        ComputeStatistics({North(0, kMorning), North(100, kMorning + 10), North(300, kMorning + 30)});
    EXPECT_NEAR(s.length, 300, 1e-6);
    EXPECT_EQ(s.duration, 30);
    EXPECT_EQ(s.movingTime, 30);
    EXPECT_EQ(s.stoppedTime, 0);
    EXPECT_NEAR(*s.averageSpeed, 10, 1e-6);
    EXPECT_NEAR(*s.movingSpeed, 10, 1e-6);
    EXPECT_NEAR(*s.greatestSpeed, 10, 1e-6);
    EXPECT_EQ(s.basis, "3 points; speeds from positions and times; no altitudes");
}

TEST(Statistics, Stop_CountsForTheAverageAloneAndNotForTheMovingSpeed) {
    // 100 m in 50 s, a stop of 150 s with 3 m of drift, 100 m in 50 s
    const Statistics s = ComputeStatistics({North(0, kMorning), North(100, kMorning + 50),
                                            North(103, kMorning + 200), North(203, kMorning + 250)});
    EXPECT_EQ(s.movingTime, 100);
    EXPECT_EQ(s.stoppedTime, 150);
    EXPECT_NEAR(*s.averageSpeed, 203.0 / 250, 1e-6);
    EXPECT_NEAR(*s.movingSpeed, 2, 1e-6);
}

TEST(Statistics, MovingThreshold_IsThreeTenthsOfAMetreASecond) {
    EXPECT_EQ(ComputeStatistics({North(0, kMorning), North(29, kMorning + 100)}).movingTime, 0);
    EXPECT_EQ(ComputeStatistics({North(0, kMorning), North(31, kMorning + 100)}).movingTime, 100);
}

TEST(Statistics, GapOfHalfAnHourWithAWay_IsNeitherMovingNorStopped) {
    const Statistics s =
        ComputeStatistics({North(0, kMorning), North(20, kMorning + 10), North(5020, kMorning + 10 + 1800)});
    EXPECT_EQ(s.movingTime, 10);
    EXPECT_EQ(s.stoppedTime, 0);
    EXPECT_EQ(s.unrecordedTime, 1800);
    EXPECT_NEAR(s.length, 5020, 1e-6);
    EXPECT_NEAR(*s.movingSpeed, 2, 1e-6);
}

TEST(Statistics, GapJustBelowHalfAnHour_IsAStep) {
    const Statistics s = ComputeStatistics({North(0, kMorning), North(5000, kMorning + 1799)});
    EXPECT_EQ(s.movingTime, 1799);
    EXPECT_EQ(s.unrecordedTime, 0);
}

TEST(Statistics, LongStopAtOnePlace_IsStopped) {
    const Statistics s = ComputeStatistics({North(0, kMorning), North(99, kMorning + 8 * 3600)});
    EXPECT_EQ(s.stoppedTime, 8 * 3600);
    EXPECT_EQ(s.unrecordedTime, 0);
    EXPECT_EQ(s.movingTime, 0);
    EXPECT_FALSE(s.movingSpeed);
}

TEST(Statistics, OwnSpeeds_GiveTheGreatestAndTellAStopFromJitter) {
    Points points;  // the position jitters by a metre while the receiver says that it stands
    for (int i = 0; i < 20; ++i) points.push_back(North(i % 2, kMorning + i, 0, 0));
    for (int i = 0; i < 10; ++i) points.push_back(North(5.0 * i, kMorning + 20 + i, 0, 5 + 0.1 * i));
    const Statistics s = ComputeStatistics(points);
    EXPECT_EQ(s.stoppedTime, 19);
    EXPECT_EQ(s.movingTime, 10);
    EXPECT_DOUBLE_EQ(*s.greatestSpeed, 5.9);
    EXPECT_EQ(s.basis, "30 points; speeds from the points' own; no altitudes");
}

TEST(Statistics, OwnSpeedsAroundALongStep_LeaveItToTheDistance) {
    // a tunnel: standing at both ends, a kilometre in between
    const Statistics s = ComputeStatistics(
        {North(0, kMorning, 0, 0), North(1000, kMorning + 60, 0, 0), North(1010, kMorning + 61, 0, 8)});
    EXPECT_EQ(s.movingTime, 61);
}

TEST(Statistics, GreatestSpeedFromPositions_IsOverFiveSeconds) {
    Points points;  // 10 m/s, and one position that jumps ahead by 15 m for a second
    for (int i = 0; i <= 20; ++i) points.push_back(North(10.0 * i + (i == 10 ? 15 : 0), kMorning + i));
    EXPECT_NEAR(*ComputeStatistics(points).greatestSpeed, (50 + 15) / 5.0, 1e-6);
}

TEST(Statistics, TrackShorterThanFiveSeconds_HasNoGreatestSpeedFromPositions) {
    EXPECT_FALSE(ComputeStatistics({North(0, kMorning), North(40, kMorning + 4)}).greatestSpeed);
}

TEST(Statistics, SeveralFixesWithinASecond_CountOnce) {
    Points points;
    for (int i = 0; i <= 100; ++i) points.push_back(North(i, kMorning + i / 10));
    const Statistics s = ComputeStatistics(points);
    EXPECT_EQ(s.movingTime, 10);
    EXPECT_NEAR(*s.movingSpeed, 10, 1e-6);
    EXPECT_NEAR(*s.greatestSpeed, 10, 1e-6);
}

TEST(Statistics, TimesThatGoBackOnce_CountForTheLengthAlone) {
    const Statistics s = ComputeStatistics({North(0, kMorning), North(100, kMorning + 100),
                                            North(200, kMorning + 50), North(300, kMorning + 150)});
    EXPECT_NEAR(s.length, 300, 1e-6);
    EXPECT_EQ(s.movingTime, 200);
    EXPECT_EQ(s.duration, 150);
}

TEST(Statistics, ReversedTrack_KeepsItsTimesAndSpeeds) {
    Points points = {North(0, kMorning), North(100, kMorning + 50), North(101, kMorning + 200),
                     North(201, kMorning + 250)};
    const Statistics forward = ComputeStatistics(points);
    std::reverse(points.begin(), points.end());
    const Statistics back = ComputeStatistics(points);
    EXPECT_EQ(back.start, forward.start);
    EXPECT_EQ(back.end, forward.end);
    EXPECT_EQ(back.movingTime, forward.movingTime);
    EXPECT_EQ(back.stoppedTime, forward.stoppedTime);
    EXPECT_NEAR(*back.greatestSpeed, *forward.greatestSpeed, 1e-9);
}

TEST(Statistics, PointsWithoutTime_TakeTheTimesOfTheOthers) {
    const Statistics s = ComputeStatistics(
        {North(0, 0), North(10, kMorning), North(20, 0), North(40, kMorning + 10), North(50, 0)});
    EXPECT_EQ(s.start, kMorning);
    EXPECT_EQ(s.duration, 10);
    EXPECT_EQ(s.movingTime, 10);
    EXPECT_NEAR(*s.movingSpeed, 3, 1e-6);
    EXPECT_NEAR(s.length, 50, 1e-6);
}

TEST(Statistics, TimesBefore1970_AreTimes) {
    const Statistics s = ComputeStatistics({North(0, -1000), North(100, -900)});
    EXPECT_EQ(s.start, -1000);
    EXPECT_EQ(s.end, -900);
    EXPECT_EQ(s.movingTime, 100);
}

TEST(Statistics, PositionThatIsNoNumber_IsLeftOutAndSaid) {
    Points points = {North(0, kMorning), North(0, kMorning + 1), North(10, kMorning + 10)};
    points[1].dLatitude = std::numeric_limits<double>::quiet_NaN();
    const Statistics s = ComputeStatistics(points);
    EXPECT_EQ(s.points, 3u);
    EXPECT_NEAR(s.length, 10, 1e-6);
    EXPECT_EQ(s.basis, "3 points, 1 of them without position; speeds from positions and times; no altitudes");
}

TEST(Statistics, Area_IsThatOfTheClosedLine) {
    // a square of a hundredth of a degree at the equator, on the radius of 6378137 m
    const Statistics s = ComputeStatistics({At(0, 0), At(0, 0.01), At(0.01, 0.01), At(0.01, 0)});
    const double side = 6378137 * 3.14159265358979 / 180 * 0.01;
    EXPECT_NEAR(s.area, side * side, 1);
}

TEST(Bounds, TrackAcrossThe180thMeridian_HasItsWestEastOfItsEast) {
    EXPECT_EQ(BoundsOf({At(-17, 179), At(-18, 179.5), At(-16, -179.5), At(-17, -179)}),
              (Bounds{-18, 179, -16, -179}));
    EXPECT_EQ(BoundsOf({At(0, -179), At(0, 178)}), (Bounds{0, 178, 0, -179}));
}

TEST(Bounds, TrackOnThe180thMeridian_StaysThere) {
    EXPECT_EQ(BoundsOf({At(1, 180), At(2, 180)}), (Bounds{1, 180, 2, 180}));
    EXPECT_EQ(BoundsOf({At(1, -180), At(2, -179)}), (Bounds{1, -180, 2, -179}));
}

TEST(Bounds, TrackThatComesBackAcross_CountsBothSides) {
    EXPECT_EQ(BoundsOf({At(0, 179), At(0, -179), At(0, 178)}), (Bounds{0, 178, 0, -179}));
}

TEST(Bounds, WayAroundTheEarth_IsAllOfIt) {
    EXPECT_EQ(BoundsOf({At(1, 0), At(2, 100), At(3, -160), At(2, -60), At(1, 5)}), (Bounds{1, -180, 3, 180}));
}

TEST(Bounds, TrackAcrossGreenwich_IsNothingSpecial) {
    EXPECT_EQ(BoundsOf({At(51, -1), At(52, 1)}), (Bounds{51, -1, 52, 1}));
}

TEST(Statistics, LengthAndAreaAcrossThe180thMeridian_AreThoseElsewhere) {
    const Points there = {At(0, 179.995), At(0, -179.995), At(0.01, -179.995), At(0.01, 179.995)};
    const Points here = {At(0, 9.995), At(0, 10.005), At(0.01, 10.005), At(0.01, 9.995)};
    EXPECT_NEAR(ComputeStatistics(there).length, ComputeStatistics(here).length, 1e-6);
    EXPECT_NEAR(ComputeStatistics(there).area, ComputeStatistics(here).area, 1);
}

TEST(Elevation, HillOfAHundredMetres_IsClimbedAndDescendedOnce) {
    std::vector<double> altitudes(30, 400);
    GoTo(altitudes, 500, 100);
    GoTo(altitudes, 500, 30);
    GoTo(altitudes, 400, 100);
    GoTo(altitudes, 400, 30);
    const Elevation e = ElevationOfWalk(altitudes);
    EXPECT_NEAR(e.ascent, 100, 1e-6);
    EXPECT_NEAR(e.descent, 100, 1e-6);
    EXPECT_EQ(e.lowest, 400);
    EXPECT_EQ(e.highest, 500);
}

TEST(Elevation, ClimbBelowTheThreshold_IsNoise) {
    std::vector<double> altitudes(30, 400);
    GoTo(altitudes, 409, 20);
    GoTo(altitudes, 400, 20);
    GoTo(altitudes, 409, 20);
    EXPECT_EQ(ElevationOfWalk(altitudes).ascent, 0);
    EXPECT_EQ(ElevationOfWalk(altitudes).descent, 0);
}

TEST(Elevation, SlowClimb_CountsThoughEachStepIsSmall) {
    std::vector<double> altitudes = {400};
    GoTo(altitudes, 700, 1000);
    EXPECT_NEAR(ElevationOfWalk(altitudes).ascent, 300, 5);
    EXPECT_EQ(ElevationOfWalk(altitudes).descent, 0);
}

TEST(Elevation, DipOnTheWayUp_BelowTheThresholdIsNotCounted) {
    std::vector<double> altitudes(30, 400);
    GoTo(altitudes, 450, 50);
    GoTo(altitudes, 442, 30);
    GoTo(altitudes, 500, 50);
    GoTo(altitudes, 500, 30);
    EXPECT_NEAR(ElevationOfWalk(altitudes).ascent, 100, 1e-6);
    EXPECT_EQ(ElevationOfWalk(altitudes).descent, 0);
}

TEST(Elevation, TwoHills_AddUp) {
    std::vector<double> altitudes(30, 100);
    for (const double target : {200.0, 200.0, 150.0, 150.0, 180.0, 180.0}) GoTo(altitudes, target, 30);
    EXPECT_NEAR(ElevationOfWalk(altitudes).ascent, 130, 1e-6);
    EXPECT_NEAR(ElevationOfWalk(altitudes).descent, 50, 1e-6);
}

// A receiver's altitude is off by an error that wanders slowly, by a metre or so, and by one that is new with
// each fix.
TEST(Elevation, WalkAroundALakeWithANoisyReceiver_ClimbsNothing) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        std::normal_distribution<double> step(0, 0.3), noise(0, 2);
        double wandering = 0;
        std::vector<double> altitudes;
        for (int i = 0; i < 1000; ++i) {
            wandering = 0.95 * wandering + step(random);
            altitudes.push_back(433 + wandering + noise(random));
        }
        const Elevation e = ElevationOfWalk(altitudes);
        EXPECT_EQ(e.ascent, 0) << "seed " << seed;
        EXPECT_EQ(e.descent, 0) << "seed " << seed;
    }
}

TEST(Elevation, NoisySummit_IsClimbedOnce) {
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0, 2);
    std::vector<double> altitudes(50, 1000);
    GoTo(altitudes, 1300, 400);
    GoTo(altitudes, 1000, 400);
    for (double& altitude : altitudes) altitude += noise(random);
    EXPECT_NEAR(ElevationOfWalk(altitudes).ascent, 300, 10);
    EXPECT_NEAR(ElevationOfWalk(altitudes).descent, 300, 10);
}

TEST(Elevation, PointsFarApart_AreNotSmoothed) {
    const Points points = {North(0, 0, 100), North(1000, 0, 150), North(2000, 0, 120), North(3000, 0, 125)};
    const Elevation e = ComputeStatistics(points).elevation.value();
    EXPECT_EQ(e.ascent, 50);
    EXPECT_EQ(e.descent, 30);
}

TEST(Elevation, ZeroEverywhere_IsNotKnown) {
    const Statistics s = ComputeStatistics(Walk({0, 0, 0}));
    EXPECT_FALSE(s.elevation);
    EXPECT_NE(s.basis.find("no altitudes"), std::string::npos);
}

TEST(Elevation, ZeroBeforeTheFirstAltitude_IsNoClimb) {
    const Elevation e = ElevationOfWalk({0, 0, 400, 400, 400});
    EXPECT_EQ(e.ascent, 0);
    EXPECT_EQ(e.lowest, 400);
}

TEST(Elevation, BelowTheSea_IsLowest) {
    const Elevation e = ElevationOfWalk({-420, -420, -420});
    EXPECT_EQ(e.highest, -420);
    EXPECT_EQ(e.ascent, 0);
}

TEST(Statistics, RealStandstill_ClimbsAndMovesNothing) {
    const auto log = RecordedFile("nmea", "still-46s-gap.nmea");
    if (!log) GTEST_SKIP() << "no recorded data here";
    const std::vector<TckPt> fixes = FixesIn(ReadFile(*log));
    const Statistics s = ComputeStatistics(Points(fixes.begin(), fixes.end()));
    ASSERT_TRUE(s.elevation && s.duration && s.stoppedTime);
    EXPECT_EQ(s.elevation->ascent, 0);
    EXPECT_GE(*s.stoppedTime, *s.duration * 9 / 10);
}

}  // namespace
}  // namespace host
