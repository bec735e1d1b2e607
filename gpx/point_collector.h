// The points of a text while it is read.
#pragma once

#include <cstddef>

#include "gpx/gpx_outline.h"

namespace gpx {

// A list that doubles takes three times its room for a moment, and copies every point twice. This one grows to
// what the rest of the text will hold if it goes on as it began.
class PointCollector {
 public:
    explicit PointCollector(const char* textEnd) : m_textEnd(textEnd) {}

    // `at` is where in the text the point ends; it only moves forward.
    void Add(const TckPt& point, const char* at);
    Points Take();

 private:
    void MakeRoom(const char* at);

    const char* m_textEnd;
    const char* m_firstEnd = nullptr;  // of the first point
    Points m_points;
};

}  // namespace gpx
