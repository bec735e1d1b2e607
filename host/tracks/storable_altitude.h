// Altitudes: which of them are known, and what a stored track can say of it. A stored document leaves an
// altitude of 0 out, and a point without one is read with that of the point before it; -0 is written, and read
// as it is. So 0 stands for an altitude that nobody measured, and -0 for one measured at the level of the sea.
#pragma once

#include <cmath>
#include <cstddef>

#include "qtrace.h"

namespace host {

inline bool KnowsAltitude(const TckPt& point) {
    return std::isfinite(point.dAltitude) && (point.dAltitude != 0 || std::signbit(point.dAltitude));
}

// A measured altitude as a point holds it.
inline double MeasuredAltitude(double metres) { return metres == 0 ? -0.0 : metres; }

// What the points will be read as: an altitude that is not known becomes that of the point before it. How many
// have been given one in this way.
template <typename PointList>
std::size_t FillUnknownAltitudes(PointList& points) {
    std::size_t given = 0;
    double before = 0;
    for (TckPt& point : points) {
        if (!KnowsAltitude(point)) {
            point.dAltitude = before;
            if (KnowsAltitude(point)) ++given;
        }
        before = point.dAltitude;
    }
    return given;
}

}  // namespace host
