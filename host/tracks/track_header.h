// What the list tells of a track without its points: taken once, since the handle reads a value of 0 from the
// file again at each query, and then forgets the name and visibility that the scan gave it.
#pragma once

#include <string>
#include <vector>

#include "host/tracks/library.h"

namespace host {

struct TrackHeader {
    std::string name, file;  // in the code page; `file` without ".gpx"
    unsigned long points = 0;
    double length = 0;        // [m]
    double area = 0;          // [m^2]
    long start = 0, end = 0;  // [s since 1970] 0: not known
    unsigned long color = 0;
    bool shown = false;

    bool HasTimes() const { return start != 0 && end >= start; }
};

// A file by strangers states no length and no times, and its number is not that of the points: then all that is
// computed from the points. The handle is as it was afterwards.
TrackHeader HeaderOf(CTrackProxy& track);
std::vector<TrackHeader> HeadersOf(const std::vector<CTrackProxy*>& tracks);

}  // namespace host
