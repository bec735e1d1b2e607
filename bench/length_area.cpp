// Length and area of a drive: ours, the same bits on every machine, and Boost.Geometry on the sphere, by
// haversine and spherical excess.
//   bench_length_area [POINTS...]
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/geometries/ring.hpp>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

namespace {

namespace bg = boost::geometry;
using Position = bg::model::point<double, 2, bg::cs::spherical_equatorial<bg::degree>>;

constexpr double kEarthRadius = 6366707.0;  // [m]

volatile double s_dSink;  // so that no result is left out

void MeasureLengthAndArea(std::size_t count) {
    const PointList points = Drive(count);
    bg::model::linestring<Position> line;
    bg::model::ring<Position> ring;
    for (const TckPt& point : points) {
        line.emplace_back(point.dLongitude, point.dLatitude);
        ring.emplace_back(point.dLongitude, point.dLatitude);
    }
    const bg::strategy::distance::haversine<double> haversine(kEarthRadius);
    const bg::strategy::area::spherical<double> spherical(kEarthRadius);

    SideBySide length("length", count);
    length.Add("ours", [&] { s_dSink = AidCalLength(points); });
    length.Add("Boost.Geometry", [&] { s_dSink = static_cast<double>(bg::length(line, haversine)); });
    length.Measure();
    SideBySide area("area", count);
    area.Add("ours", [&] { s_dSink = AidCalArea(points); });
    area.Add("Boost.Geometry", [&] { s_dSink = bg::area(ring, spherical); });
    area.Measure();
}

}  // namespace

int main(int argc, char** argv) {
    for (const std::size_t size : SizesFrom(argc, argv, {10'000, 100'000, 1'000'000}))
        MeasureLengthAndArea(size);
    return 0;
}
