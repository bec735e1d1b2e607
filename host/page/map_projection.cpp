#include "host/page/map_projection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/tracks/bounds.h"

namespace host {
namespace {

constexpr double kDegreesPerRadian = 180 / std::numbers::pi;
constexpr double kMetresPerDegree = 1852 * 60;
constexpr double kLeastDegrees = 50 / kMetresPerDegree;
constexpr double kFarthestNorth = 85;  // beyond it the projection runs away

// How far north a latitude lies in the projection, in degrees of longitude.
double Northing(double latitude) {
    const double kept = std::clamp(latitude, -kFarthestNorth, kFarthestNorth);
    return std::asinh(std::tan(kept / kDegreesPerRadian)) * kDegreesPerRadian;
}

double LatitudeOf(double northing) {
    return std::atan(std::sinh(northing / kDegreesPerRadian)) * kDegreesPerRadian;
}

struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    void Take(double value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double Middle() const { return (low + high) / 2; }
    double Size() const { return std::max(high - low, kLeastDegrees); }
};

}  // namespace

GroundLine LineOf(const Points& points, double nearTo) {
    GroundLine line;
    line.longitudes = ContinuousLongitudes(points);
    const double turns = points.empty() ? 0 : std::round((nearTo - points.front().dLongitude) / 360);
    for (double& longitude : line.longitudes) longitude += 360 * turns;
    for (const TckPt& point : points) line.latitudes.push_back(point.dLatitude);
    return line;
}

MapProjection::MapProjection(const std::vector<GroundLine>& lines, const PictureFrame& frame) {
    Range east, north;
    for (const GroundLine& line : lines) {
        for (const double longitude : line.longitudes) east.Take(longitude);
        for (const double latitude : line.latitudes) north.Take(Northing(latitude));
    }
    m_perDegree = std::min(frame.width / east.Size(), frame.height / north.Size());
    m_west = east.Middle() - (frame.left + frame.width / 2) / m_perDegree;
    m_north = north.Middle() + (frame.top + frame.height / 2) / m_perDegree;
    m_middleLatitude = LatitudeOf(north.Middle());
}

Spot MapProjection::At(double latitude, double longitude) const {
    return {(longitude - m_west) * m_perDegree, (m_north - Northing(latitude)) * m_perDegree};
}

double MapProjection::LatitudeAt(double y) const { return LatitudeOf(m_north - y / m_perDegree); }
double MapProjection::LongitudeAt(double x) const { return m_west + x / m_perDegree; }
double MapProjection::DegreesPerPixel() const { return 1 / m_perDegree; }

double MapProjection::MetresPerPixel() const {
    return kMetresPerDegree * std::cos(m_middleLatitude / kDegreesPerRadian) / m_perDegree;
}

}  // namespace host
