// Places on the earth to places in a picture.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "host/page/map_projection.h"

namespace host {
namespace {

constexpr PictureFrame kFrame = {100, 50, 800, 400};

Points At(std::initializer_list<std::pair<double, double>> places) {
    Points points;
    for (const auto& [latitude, longitude] : places) points.push_back({latitude, longitude, 0, 0, 0, 0, {}});
    return points;
}

std::vector<Spot> SpotsOf(const GroundLine& line, const MapProjection& projection) {
    std::vector<Spot> spots;
    for (std::size_t i = 0; i < line.latitudes.size(); ++i)
        spots.push_back(projection.At(line.latitudes[i], line.longitudes[i]));
    return spots;
}

bool IsInside(const Spot& spot) {
    return spot.x >= 99.999 && spot.x <= 900.001 && spot.y >= 49.999 && spot.y <= 450.001;
}

TEST(MapProjection, Track_FillsTheFrameWithNorthUp) {
    const GroundLine line = LineOf(At({{47, 8}, {47.1, 8.4}}), 8);
    const MapProjection projection({line}, kFrame);
    const std::vector<Spot> spots = SpotsOf(line, projection);
    EXPECT_TRUE(IsInside(spots[0]) && IsInside(spots[1]));
    EXPECT_NEAR(spots[1].x - spots[0].x, 800, 1e-6);
    EXPECT_LT(spots[1].y, spots[0].y);
}

TEST(MapProjection, Track_AcrossThe180thMeridian_IsNoWiderThanItIs) {
    const GroundLine line = LineOf(At({{-17, 179.9}, {-17.05, -179.9}, {-17, -179.7}, {-17.1, 179.8}}), 179.9);
    const MapProjection projection({line}, kFrame);
    EXPECT_NEAR(projection.DegreesPerPixel() * kFrame.width, 0.5, 1e-9);
    for (const Spot& spot : SpotsOf(line, projection)) EXPECT_TRUE(IsInside(spot));
}

TEST(MapProjection, TracksOnBothSidesOfThe180thMeridian_LieBesideEachOther) {
    const GroundLine west = LineOf(At({{-17, 179.9}, {-17, 179.95}}), 179.9);
    const GroundLine east = LineOf(At({{-17, -179.95}, {-17, -179.9}}), 179.9);
    const MapProjection projection({west, east}, kFrame);
    EXPECT_NEAR(projection.DegreesPerPixel() * kFrame.width, 0.2, 1e-9);
    EXPECT_LT(SpotsOf(west, projection)[1].x, SpotsOf(east, projection)[0].x);
}

TEST(MapProjection, PlacesComeBack) {
    const MapProjection projection({LineOf(At({{60, -20}, {62, -10}}), 0)}, kFrame);
    const Spot spot = projection.At(61, -15);
    EXPECT_NEAR(projection.LatitudeAt(spot.y), 61, 1e-9);
    EXPECT_NEAR(projection.LongitudeAt(spot.x), -15, 1e-9);
}

// A degree of longitude at 60 degrees north is half as long as at the equator: 60 nautical miles there.
TEST(MapProjection, Scale_IsThatOfTheMiddle) {
    const MapProjection projection({LineOf(At({{60, 8}, {60, 9}}), 8)}, kFrame);
    EXPECT_NEAR(projection.MetresPerPixel() * 800, 60 * 1852 / 2.0, 1);
}

TEST(MapProjection, StandingStillAndPoles_GiveNumbers) {
    const GroundLine still = LineOf(At({{47, 8}, {47, 8}}), 8);
    EXPECT_TRUE(IsInside(MapProjection({still}, kFrame).At(47, 8)));
    const GroundLine poles = LineOf(At({{90, 0}, {-90, 0}}), 0);
    for (const Spot& spot : SpotsOf(poles, MapProjection({poles}, kFrame))) EXPECT_TRUE(IsInside(spot));
}

}  // namespace
}  // namespace host
