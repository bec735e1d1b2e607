// Thinning a drive to 2 m: ours, and Boost.Geometry and GEOS with the same tolerance on the same points. All
// begin with the points as they are recorded: bringing them into a plane is part of the work. Ours thins them
// where they lie, in a copy made before; the others make a line of two coordinates a point. Then a line made to
// be divided one point at a time.
//   bench_simplify [POINTS...]
#include <geos_c.h>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <cmath>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"
#include "track/geodesy.h"
#include "track/simplify.h"

namespace {

namespace bg = boost::geometry;
using BoostLine = bg::model::linestring<bg::model::d2::point_xy<double>>;

const double kTolerance = 2.0 * geodesy::kMetresToDegrees;  // 2 m
constexpr std::size_t kMostForQuadratic = 10'000;

double Shrink(const PointList& points) { return std::cos(points.front().dLatitude * geodesy::kDegToRad); }

std::size_t ThinOurs(PointList& points) {
    CDilutionPt dilution;
    dilution.SetSimplifyDis(kTolerance);
    dilution.SimplifyPt(points);
    return points.size();
}

std::size_t ThinWithBoost(const PointList& points) {
    const double shrink = Shrink(points);
    BoostLine line;
    line.reserve(points.size());
    for (const TckPt& point : points) line.emplace_back(point.dLongitude * shrink, point.dLatitude);
    BoostLine thinned;
    bg::simplify(line, thinned, kTolerance);
    return thinned.size();
}

std::size_t ThinWithGeos(const PointList& points) {
    static const GEOSContextHandle_t geos = GEOS_init_r();
    const double shrink = Shrink(points);
    std::vector<double> plane;
    plane.reserve(2 * points.size());
    for (const TckPt& point : points) {
        plane.push_back(point.dLongitude * shrink);
        plane.push_back(point.dLatitude);
    }
    const auto size = static_cast<unsigned>(points.size());
    GEOSCoordSequence* const sequence = GEOSCoordSeq_copyFromBuffer_r(geos, plane.data(), size, 0, 0);
    GEOSGeometry* const line = GEOSGeom_createLineString_r(geos, sequence);
    GEOSGeometry* const thinned = GEOSSimplify_r(geos, line, kTolerance);
    const int kept = GEOSGeomGetNumPoints_r(geos, thinned);
    GEOSGeom_destroy_r(geos, thinned);
    GEOSGeom_destroy_r(geos, line);
    return static_cast<std::size_t>(kept);
}

void MeasureThinning(const std::string& work, const PointList& points, bool withPeers) {
    SideBySide works(work, points.size());
    PointList thinned;
    works.Add(
        "ours", [&] { ThinOurs(thinned); }, [&] { thinned = points; });
    if (withPeers) works.Add("Boost.Geometry", [&] { ThinWithBoost(points); });
    if (withPeers) works.Add("GEOS", [&] { ThinWithGeos(points); });
    works.Measure();
}

void PrintKept(const PointList& points) {
    PointList thinned = points;
    PrintFigure("simplify: points kept", points.size(), "ours", static_cast<double>(ThinOurs(thinned)));
    PrintFigure("simplify: points kept", points.size(), "Boost.Geometry",
                static_cast<double>(ThinWithBoost(points)));
    PrintFigure("simplify: points kept", points.size(), "GEOS", static_cast<double>(ThinWithGeos(points)));
}

}  // namespace

int main(int argc, char** argv) {
    for (const std::size_t size : SizesFrom(argc, argv, {1000, 10'000, 100'000, 1'000'000})) {
        const PointList drive = Drive(size);
        MeasureThinning("simplify", drive, true);
        PrintKept(drive);
        if (size <= 100'000)
            MeasureThinning("simplify, made to be slow", SlowLine(size), size <= kMostForQuadratic);
    }
    return 0;
}
