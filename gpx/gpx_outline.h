// A document of many points would make a tree several times its size. So its points are parsed one at a time,
// each in the same few bytes of memory, and taken out of the text; the tree is made of what is left, the
// outline.
#pragma once

#include <vector>

#include "gpx/text_window.h"
#include "track/point.h"
#include "util/je_allocator.h"

namespace gpx {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

enum class PointsWanted { None, OfFirstSegment, OfAllSegments };

// Reads the points of the first trk of the first gpx, in document order, and takes the points of all tracks and
// routes and all waypoints out of `text`, which has no zero in it, is read to its end and becomes shorter. A
// trkseg that held points is left with one trkpt, which says nothing. Elements nested too deep, and whatever
// RapidXML refuses, throw rapidxml::parse_error; a file that cannot be read on throws as TextWindow says.
Points TakeOutPoints(TextWindow& text, PointsWanted wanted);

}  // namespace gpx
