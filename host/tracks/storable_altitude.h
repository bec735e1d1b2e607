// Altitudes as a stored track can keep them. A stored document leaves an altitude of 0 out, and a point without
// one is read with that of the point before it; -0 is written.
#pragma once

#include <algorithm>

#include "qtrace.h"

namespace host {

// A list in which every altitude is 0 knows none, and stays as it is.
template <typename PointList>
void MakeAltitudesStorable(PointList& points) {
    const bool knowsAny =
        std::any_of(points.begin(), points.end(), [](const TckPt& p) { return p.dAltitude != 0; });
    for (TckPt& point : points)
        if (knowsAny && point.dAltitude == 0) point.dAltitude = -0.0;
}

}  // namespace host
