// Cutting a track where its recording was interrupted. Pure functions; `qtrace split` stores the pieces.
#pragma once

#include <optional>
#include <vector>

#include "host/tracks/library.h"

namespace host {

struct CutAt {
    std::optional<long> gap;         // [s] points at least so far apart in time, in either direction
    std::optional<double> distance;  // [m] or so far apart on the ground
};

// All points, in order, none of them twice; one piece when there is nowhere to cut. A piece may be one point.
std::vector<Points> SplitPoints(const Points& points, const CutAt& where);

}  // namespace host
