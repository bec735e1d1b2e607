// Distance, bearing, length and area on the sphere. Pure functions, whose results are the same bits on every
// system: the sines and arc tangents are those of util/trigonometry.h. A track's cached statistics:
// track/track.h.
#pragma once

#include <vector>

#include "track/point.h"
#include "util/export.h"
#include "util/je_allocator.h"

// Great-circle distance and initial bearing on the sphere of 60 nautical miles per degree.
//   lat1..lon2   [deg]  finite; the same point twice gives 0 m and 0 deg
//   *pDistance   [m]
//   *pBearing    [deg]  from point 1 towards point 2, 0 <= bearing < 360, to which bearingOffset is added as it
//   is
// Below about 0.6 m the bearing is 0. Never fails, allocates nothing, any thread. Both pointers must be
// non-null. Source: spherical law of cosines in its atan2 form.
QTRACE_API void CalDistance(double lat1, double lon1, double lat2, double lon2, double bearingOffset,
                            double* pDistance, double* pBearing);

// Length of the line through the points [m]: the sum of the distances between neighbours; 0 below two points.
QTRACE_API double AidCalLength(const std::vector<TckPt, je_allocator<TckPt>>& pts);

// Signed area of the closed polygon through the points [m^2], positive when it runs counterclockwise (north
// up); 0 below three points. Reversing the order flips the sign. Source: shoelace formula on degrees, scaled by
// the cosine of the first point's latitude, on the equatorial radius.
QTRACE_API double AidCalArea(const std::vector<TckPt, je_allocator<TckPt>>& pts);

namespace geodesy {

// Degrees to radians with pi cut to 3.14159265358979: stored tracks depend on it. Not a library's pi.
inline constexpr double kDegToRad = 0.017453292519943278;
// Square metres of a square degree at the equator.
inline constexpr double kSquareDegree = 12392029030.466246;
inline constexpr double kHalfSquareDegree = 6196014515.233123;     // half of it
inline constexpr double kPerSquareDegree = 8.069703496832232e-11;  // its inverse
// Metres to degrees of arc along the equator.
inline constexpr double kMetresToDegrees = 8.983152841197925e-6;

// The distance that CalDistance gives, without the bearing [m].
double Distance(const TckPt& from, const TckPt& to);

}  // namespace geodesy
