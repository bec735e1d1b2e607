// The form that nearly every point of a document has, read straight from the text: a tree of each would take
// several times as long. What has any other form is left to the parser (gpx/gpx_point.h), and both give the
// same.
#pragma once

#include <array>
#include <cstddef>

#include "gpx/gpx_time.h"
#include "track/point.h"

namespace gpx {

// A plain point is a trkpt with the attributes lat and lon and no other, both decimal numbers, and with
// elements that hold text or elements and have no attributes. Of its own elements the first ele holds a decimal
// number and the first time begins with a digit. No references, comments, CDATA sections or text between the
// elements.
class PlainPointReader {
 public:
    // Reads the point that begins at `begin`, in a zero-terminated text. What it does not state stays as it is
    // in `point`. Returns the bytes it takes; 0, with `point` untouched, when no plain point stands there.
    std::size_t Read(const char* begin, TckPt& point);

    // The bytes a plain point takes, none of it read; 0 likewise. The text ends at `textEnd`.
    std::size_t Measure(const char* begin, const char* textEnd);

 private:
    bool FitsModel(const char* begin) const;
    void MakeModel(const char* begin, std::size_t size);

    static constexpr std::size_t kBlock = 16;
    using Block = std::array<unsigned char, kBlock>;

    TimeReader m_times;
    // The point measured last, if it is short: each byte as the lowest one that may stand there, and how many
    // more may. Programs write one point like the other: what differs from it in nothing but digits needs no
    // second look.
    std::array<unsigned char, 320> m_lowest{};
    std::array<unsigned char, 320> m_span{};
    std::size_t m_modelSize = 0;
};

}  // namespace gpx
