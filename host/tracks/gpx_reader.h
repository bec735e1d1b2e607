// The tracks of a GPX document by anybody: versions 1.0 and 1.1 or none, any namespace and prefix, any
// encoding, whole or damaged. The file is only read. Its XML: host/text/xml_reader.h. The other direction:
// host/tracks/track_document.h.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/text/xml_reader.h"
#include "qtrace.h"

namespace host {

struct GpxTrack {
    std::string name;                    // UTF-8; empty when it has none
    std::optional<unsigned long> color;  // 0x00BBGGRR
    std::size_t segments = 0;            // with points
    std::vector<TckPt> points;           // of all segments
    // What of the points could not be taken.
    std::uint64_t badPositions =
        0;                         // points left out: latitude or longitude missing, no number or out of range
    std::uint64_t badTimes = 0;    // unreadable, or not within the 32 bits of a time
    std::uint64_t badNumbers = 0;  // elevations, speeds and courses
};

struct GpxOutcome {
    XmlOutcome xml;
    std::uint64_t tracks = 0;
    std::uint64_t waypoints = 0;
    std::uint64_t routes = 0;
    std::uint64_t routePoints = 0;
};

// Each track is handed over at its end; at the end of a damaged document also the one that is open, with its
// whole points. Speed [m/s] and course [deg] are taken from the elements of version 1.0 or from extensions,
// whatever their namespace. A point without elevation or time has those of the point before it, as the library
// reads its own documents; an elevation of 0 is -0 (host/tracks/storable_altitude.h). Of fractions of a second
// only the whole seconds count; times without zone are UTC.
GpxOutcome ReadGpx(FileReader& file, const std::function<void(GpxTrack&)>& sink);

}  // namespace host
