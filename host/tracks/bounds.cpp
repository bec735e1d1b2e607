#include "host/tracks/bounds.h"

#include <algorithm>
#include <cmath>

namespace host {

std::vector<double> ContinuousLongitudes(const Points& points) {
    std::vector<double> longitudes;
    longitudes.reserve(points.size());
    for (const TckPt& point : points) {
        const double before = longitudes.empty() ? point.dLongitude : longitudes.back();
        const double turns = std::round((before - point.dLongitude) / 360);
        longitudes.push_back(point.dLongitude + 360 * turns);
    }
    return longitudes;
}

double NormalLongitude(double longitude) {
    if (longitude >= -180 && longitude <= 180) return longitude;
    return std::remainder(longitude, 360);
}

std::optional<Bounds> BoundsOf(const Points& points) {
    if (points.empty()) return std::nullopt;
    const auto [south, north] = std::minmax_element(
        points.begin(), points.end(), [](const TckPt& a, const TckPt& b) { return a.dLatitude < b.dLatitude; });
    const std::vector<double> longitudes = ContinuousLongitudes(points);
    const auto [west, east] = std::minmax_element(longitudes.begin(), longitudes.end());
    Bounds bounds{south->dLatitude, -180, north->dLatitude, 180};
    if (*east - *west >= 360) return bounds;
    bounds.west = NormalLongitude(*west);
    bounds.east = NormalLongitude(*east);
    return bounds;
}

double AreaOf(const Points& points) {
    const std::vector<double> longitudes = ContinuousLongitudes(points);
    Points continuous = points;
    for (std::size_t i = 0; i < points.size(); ++i) continuous[i].dLongitude = longitudes[i];
    return std::fabs(AidCalArea(continuous));
}

}  // namespace host
