// What people want to know of a track, computed from its points alone. Pure functions. Altitudes:
// host/tracks/elevation.h. Bounds and area: host/tracks/bounds.h. As JSON: host/text/json.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/tracks/bounds.h"
#include "host/tracks/elevation.h"
#include "host/tracks/library.h"

namespace host {

// Slower than this over the ground is standing still: receivers drift by that much.
constexpr double kMovingSpeed = 0.3;  // [m/s]
// Between points that lie at least so far apart in time the recording was off. The way in between is part of
// the length, but the time is neither moving nor stopped, unless the next point lies near the place of the
// last: then it was a stop.
constexpr long kGap = 1800;         // [s]
constexpr double kSamePlace = 100;  // [m]
// The greatest speed without speeds of the points' own is over at least so long: positions jitter.
constexpr long kSpeedWindow = 5;  // [s]
// Speeds of the points' own tell of steps up to so long; over longer ones the distance does.
constexpr long kLongStep = 10;  // [s]

struct Statistics {
    std::uint64_t points = 0;
    std::optional<long> start, end;  // [s since 1970] the earlier and the later end of the track
    std::optional<long> duration;    // [s] from start to end
    std::optional<long> movingTime, stoppedTime, unrecordedTime;     // [s]
    double length = 0;                                               // [m]
    std::optional<double> averageSpeed, movingSpeed, greatestSpeed;  // [m/s] movingSpeed: while moving
    std::optional<Elevation> elevation;
    double area = 0;  // [m^2] of the closed line
    std::optional<Bounds> bounds;
    std::string basis;  // for the user: "278 points; speeds from positions and times"
};

// Points whose position is no number are left out. A track whose times run backwards, as a reversed one does,
// is taken in their order; elsewhere a step back in time counts for the length alone.
Statistics ComputeStatistics(const Points& points);

}  // namespace host
