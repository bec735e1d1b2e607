#include "host/tracks/track_document.h"

#include <algorithm>

#include "host/tracks/storable_altitude.h"

namespace host {
namespace {

template <typename Holds>
bool AnyPoint(const DocumentTrack& track, Holds holds) {
    return std::any_of(track.segments.begin(), track.segments.end(), [&](const Segment& segment) {
        return std::any_of(segment.begin(), segment.end(), holds);
    });
}

}  // namespace

std::size_t DocumentTrack::Points() const {
    std::size_t points = 0;
    for (const Segment& segment : segments) points += segment.size();
    return points;
}

bool DocumentTrack::HasAltitudes() const { return AnyPoint(*this, KnowsAltitude); }

bool DocumentTrack::HasTimes() const {
    return !AnyPoint(*this, [](const TckPt& point) { return point.lTime == 0; });
}

}  // namespace host
