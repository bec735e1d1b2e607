// Whether the library has a track already: the same points, as far as a stored track keeps them.
#pragma once

#include <vector>

#include "host/tracks/library.h"
#include "qtrace.h"

namespace host {

// A stored track has positions of six decimals and altitudes in single precision, and neither speed nor course.
bool IsSamePointStored(const TckPt& point, const TckPt& stored);

// The stored track with these points, in this order; null if there is none. Only tracks of as many points are
// read.
CTrackProxy* FindSameTrack(const Library& library, const std::vector<TckPt>& points);

}  // namespace host
