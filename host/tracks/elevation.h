// Altitudes along a track: what it climbs and descends once the receiver's noise is out. Which points know
// theirs: host/tracks/storable_altitude.h.
#pragma once

#include <optional>
#include <vector>

#include "host/tracks/library.h"
#include "host/tracks/storable_altitude.h"

namespace host {

// Satellite altitudes wander by several metres while one stands still, and by more under trees: the altitude at
// a place is the mean of those within this much of the way before and behind it, ...
constexpr double kSmoothedWay = 50;  // [m]
// ... and going up or down by less than this before turning round is noise. So the way around a lake climbs
// nothing.
constexpr double kLeastClimb = 10;  // [m]

struct Elevation {  // [m]
    double ascent = 0, descent = 0;
    double lowest = 0, highest = 0;  // as measured, without smoothing
};

// How far each point is from the first, along the track [m]. Positions must be finite.
std::vector<double> DistancesAlong(const Points& points);

// Nothing when no point knows its altitude. `distances`: DistancesAlong(points).
std::optional<Elevation> ElevationOf(const Points& points, const std::vector<double>& distances);

}  // namespace host
