// Where a track is cut.
#include "host/tracks/split_track.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(SplitTrack, Pieces_HoldEveryPointOnce) {
    Points points(5);
    for (int i = 0; i < 5; ++i) points[static_cast<std::size_t>(i)].lTime = 100 + 10 * i + (i > 2 ? 60 : 0);
    const auto pieces = SplitPoints(points, {60, std::nullopt});
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].size(), 3u);
    EXPECT_EQ(pieces[1].size(), 2u);
    EXPECT_EQ(SplitPoints(points, {71, std::nullopt}).size(), 1u);
    EXPECT_TRUE(SplitPoints({}, {60, std::nullopt}).empty());
}

TEST(SplitTrack, PointsWithoutTimeAndReversedTracks_AreCutWhereTheTimeIsKnown) {
    Points points(3);
    points[0].lTime = 5000;
    points[2].lTime = 100;
    EXPECT_EQ(SplitPoints(points, {60, std::nullopt}).size(), 1u);
    points[1].lTime = 200;
    EXPECT_EQ(SplitPoints(points, {1000, std::nullopt}).size(), 2u);
}

}  // namespace
}  // namespace host
