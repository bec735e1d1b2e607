#include "host/tracks/split_track.h"

#include <cmath>
#include <cstdlib>

namespace host {
namespace {

bool IsCut(const TckPt& a, const TckPt& b, const CutAt& where) {
    if (where.gap && a.lTime != 0 && b.lTime != 0 && std::labs(long{b.lTime} - a.lTime) >= *where.gap)
        return true;
    if (!where.distance) return false;
    double distance = 0, bearing = 0;
    CalDistance(a.dLatitude, a.dLongitude, b.dLatitude, b.dLongitude, 0, &distance, &bearing);
    return distance >= *where.distance;
}

}  // namespace

std::vector<Points> SplitPoints(const Points& points, const CutAt& where) {
    std::vector<Points> pieces;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i == 0 || IsCut(points[i - 1], points[i], where)) pieces.emplace_back();
        pieces.back().push_back(points[i]);
    }
    return pieces;
}

}  // namespace host
