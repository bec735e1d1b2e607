// A track as it is drawn, by the page and in the picture: as many points as a drawing needs, with their
// distance and speed; its figures from all points.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/text/json.h"
#include "host/tracks/library.h"
#include "host/tracks/statistics.h"

namespace host {

// A track of more points is thinned to about so many for drawing.
constexpr std::size_t kMostDrawnPoints = 12'000;

// All lists of one length but `breaks`.
struct DrawnPoints {
    Points points;                              // their positions are numbers
    std::vector<double> distances;              // [m] along the whole track
    std::vector<std::optional<double>> speeds;  // [m/s] the points' own, or else from distances and times
    std::vector<std::size_t> breaks;            // where a new piece begins, after a pause of kGap or more
};

// Every point where there are not too many; otherwise those that hold the line's shape, and some between them
// for the profile.
DrawnPoints PointsToDraw(const Points& all);

struct DrawnTrack {
    std::string id;    // file name; UTF-8
    std::string name;  // UTF-8
    std::string color;
    bool shown = true;
    Statistics statistics;
    DrawnPoints drawn;
};

// Reads the points. Nothing when there are none, or the file cannot be read.
std::optional<DrawnTrack> ReadDrawnTrack(CTrackProxy& track);

// Columns: lat, lon [deg, 7 digits], dist [m], and ele [m], speed [m/s], time [s since 1970], each null when no
// point knows it, with null where one does not; breaks.
Json DrawnPointsJson(const DrawnPoints& drawn);
Json DrawnTrackJson(const DrawnTrack& track);

}  // namespace host
