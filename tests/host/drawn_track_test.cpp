// Which points of a track are drawn, and what stands beside them.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "host/page/drawn_track.h"

namespace host {
namespace {

TckPt Fix(double latitude, double longitude, int time, double speed = 0) {
    return {latitude, longitude, 0, speed, time, 0, {}};
}

// A way that winds about, so that thinning cannot take all of it.
Points WindingWay(int count) {
    Points points;
    for (int i = 0; i < count; ++i)
        points.push_back(Fix(47 + 1e-3 * std::sin(i / 7.0), 8 + 1e-5 * i, 1000 + i));
    return points;
}

TEST(DrawnTrack, FewPoints_AreAllDrawn) {
    const DrawnPoints drawn = PointsToDraw(WindingWay(10'000));
    EXPECT_EQ(drawn.points.size(), 10'000u);
    EXPECT_EQ(drawn.distances.size(), 10'000u);
    EXPECT_EQ(drawn.speeds.size(), 10'000u);
}

TEST(DrawnTrack, ManyPoints_AreThinnedButKeepEndsAndLength) {
    const Points all = WindingWay(150'000);
    const DrawnPoints drawn = PointsToDraw(all);
    EXPECT_LE(drawn.points.size(), kMostDrawnPoints + 1);
    EXPECT_GT(drawn.points.size(), kMostDrawnPoints / 3);
    EXPECT_EQ(drawn.points.front().lTime, all.front().lTime);
    EXPECT_EQ(drawn.points.back().lTime, all.back().lTime);
    EXPECT_DOUBLE_EQ(drawn.distances.back(), ComputeStatistics(all).length);
}

TEST(DrawnTrack, StraightRoad_KeepsPointsForItsProfile) {
    Points road;
    for (int i = 0; i < 100'000; ++i) road.push_back(Fix(40 + 1e-5 * i, 8, 1000 + i));
    EXPECT_GT(PointsToDraw(road).points.size(), 5000u);
}

TEST(DrawnTrack, Pause_BeginsANewPieceAlsoBetweenThinnedPoints) {
    Points points = WindingWay(60'000);
    for (std::size_t i = 30'001; i < points.size(); ++i) points[i].lTime += 1800;
    const DrawnPoints drawn = PointsToDraw(points);
    ASSERT_EQ(drawn.breaks.size(), 1u);
    EXPECT_GT(drawn.points[drawn.breaks[0]].lTime, points[30'000].lTime);
    EXPECT_LE(drawn.points[drawn.breaks[0] - 1].lTime, points[30'000].lTime);
}

TEST(DrawnTrack, SpeedsOfItsOwn_AreTaken) {
    const DrawnPoints drawn =
        PointsToDraw({Fix(47, 8, 1000, 3), Fix(47.001, 8, 1001, 0), Fix(47.002, 8, 1002, 5)});
    EXPECT_EQ(drawn.speeds, (std::vector<std::optional<double>>{3, 0, 5}));
}

// 1852 m a minute of latitude: 0.001 degrees are 111.12 m.
TEST(DrawnTrack, SpeedsWithoutItsOwn_ComeFromWayAndTime) {
    Points points;
    for (int i = 0; i < 20; ++i) points.push_back(Fix(47 + 0.001 * i, 8, 1000 + 10 * i));
    for (const auto& speed : PointsToDraw(points).speeds) {
        ASSERT_TRUE(speed);
        EXPECT_NEAR(*speed, 11.112, 0.01);
    }
}

TEST(DrawnTrack, NoTimes_MeanNoSpeedAndNoTimeline) {
    const DrawnPoints drawn = PointsToDraw({Fix(47, 8, 0), Fix(47.001, 8, 0)});
    const Json json = DrawnPointsJson(drawn);
    EXPECT_TRUE(json["speed"].is_null());
    EXPECT_TRUE(json["time"].is_null());
    EXPECT_TRUE(json["ele"].is_null());
    EXPECT_EQ(json["lat"].size(), 2u);
}

TEST(DrawnTrack, SpeedAcrossAPause_IsNotMade) {
    const DrawnPoints drawn = PointsToDraw({Fix(47, 8, 1000), Fix(48, 8, 1000 + 1800)});
    EXPECT_EQ(drawn.speeds, (std::vector<std::optional<double>>{std::nullopt, std::nullopt}));
}

TEST(DrawnTrack, PositionsThatAreNoNumber_AreLeftOut) {
    const double nan = std::numeric_limits<double>::quiet_NaN(),
                 infinity = std::numeric_limits<double>::infinity();
    const DrawnPoints drawn =
        PointsToDraw({Fix(47, 8, 1000), Fix(nan, 8, 1001), Fix(47, infinity, 1002), Fix(47.001, 8, 1003)});
    EXPECT_EQ(drawn.points.size(), 2u);
    EXPECT_TRUE(PointsToDraw({}).points.empty());
}

}  // namespace
}  // namespace host
