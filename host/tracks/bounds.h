// Where a track lies. Longitudes jump by 360 degrees at the 180th meridian; here they are first laid out
// without that jump, so that a track across it is as wide as it is on the ground.
#pragma once

#include <optional>
#include <vector>

#include "host/tracks/library.h"

namespace host {

struct Bounds {                                       // [deg]
    double south = 0, west = 0, north = 0, east = 0;  // west > east: across the 180th meridian
    bool operator==(const Bounds&) const = default;
};

// The longitudes of the points [deg], each within 180 degrees of the one before it; so they may go beyond 180.
std::vector<double> ContinuousLongitudes(const Points& points);

// A longitude between -180 and 180; one in that range stays as it is.
double NormalLongitude(double longitude);

// Nothing without points. A track around the whole earth is -180 to 180. Positions must be finite.
std::optional<Bounds> BoundsOf(const Points& points);

// The track's area [m^2], as the library computes it, on continuous longitudes.
double AreaOf(const Points& points);

}  // namespace host
