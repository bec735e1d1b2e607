// The points of a text while it is read.
#pragma once

#include <cstdint>

#include "gpx/gpx_outline.h"

namespace gpx {

// A list that doubles takes three times its room for a moment, and copies every point twice. This one grows to
// what the rest of the text will hold if it goes on as it began.
class PointCollector {
 public:
    // `textSize` [bytes] may be a guess.
    explicit PointCollector(std::uint64_t textSize) : m_textSize(textSize) {}

    // `at` is where in the text the point ends; it only moves forward.
    void Add(const TckPt& point, std::uint64_t at) {
        if (m_points.size() == m_points.capacity()) MakeRoom(at);
        m_points.push_back(point);
    }
    Points Take();

 private:
    void MakeRoom(std::uint64_t at);

    std::uint64_t m_textSize;
    std::uint64_t m_firstEnd = 0;  // of the first point
    Points m_points;
};

}  // namespace gpx
