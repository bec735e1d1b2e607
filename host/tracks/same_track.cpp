#include "host/tracks/same_track.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr double kHalfStep = 0.5000001e-6;  // [deg] what rounding to six decimals changes

bool IsNear(double a, double b, double tolerance) { return std::fabs(a - b) <= tolerance; }

}  // namespace

bool IsSamePointStored(const TckPt& point, const TckPt& stored) {
    return point.lTime == stored.lTime && IsNear(point.dLatitude, stored.dLatitude, kHalfStep) &&
           IsNear(point.dLongitude, stored.dLongitude, kHalfStep) &&
           IsNear(point.dAltitude, stored.dAltitude, 1e-6 + 1e-7 * std::fabs(point.dAltitude));
}

CTrackProxy* FindSameTrack(const Library& library, const std::vector<TckPt>& points) {
    for (CTrackProxy* track : library.Tracks()) {
        if (track->GetPtCount() != points.size()) continue;
        Points stored;
        track->GetPtList(stored);
        if (std::equal(points.begin(), points.end(), stored.begin(), stored.end(), IsSamePointStored))
            return track;
    }
    return nullptr;
}

}  // namespace host
