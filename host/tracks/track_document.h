// Tracks as documents for other programs: GPX, GeoJSON, KML, CSV. Each is written in one pass, point by point.
// Where it goes: host/text/output_file.h. The command: host/commands/export_command.cpp. Reading GPX:
// host/tracks/gpx_reader.h.
#pragma once

#include <string>
#include <vector>

#include "host/text/output_file.h"
#include "qtrace.h"

namespace host {

using Segment = std::vector<TckPt>;

struct DocumentTrack {
    std::string name;     // UTF-8
    unsigned long color;  // 0x00BBGGRR
    std::vector<Segment> segments;

    std::size_t Points() const;
    bool HasAltitudes() const;  // one at least is known (host/tracks/storable_altitude.h)
    bool HasTimes() const;      // every point has one
};

// What every format has in common: numbers are the shortest that read back as exactly the same value; what a
// point does not know is left out: a time of 0, an altitude, speed and course when both are 0. Each stops early
// when the sink refuses.

// GPX 1.1. Speed and course are in extensions, since 1.1 has no elements for them and strict readers refuse
// strangers there.
void WriteGpx(const std::vector<DocumentTrack>& tracks, const TextSink& sink);

// RFC 7946: a feature a track. A line across the 180th meridian is cut there, into parts that meet it. Times
// are in the property "coordTimes", in the shape of the coordinates.
void WriteGeoJson(const std::vector<DocumentTrack>& tracks, const TextSink& sink);

// KML 2.2: points with times where every point has one, otherwise lines; a single point is a point.
void WriteKml(const std::vector<DocumentTrack>& tracks, const TextSink& sink);

// RFC 4180 with a header row and line feeds: a row a point.
void WriteCsv(const std::vector<DocumentTrack>& tracks, const TextSink& sink);

}  // namespace host
