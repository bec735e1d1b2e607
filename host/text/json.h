// The shape of what the program hands out as JSON, the same in every command: snake_case keys; metres, seconds,
// metres per second, degrees; times as "2024-05-12T08:15:06Z"; names in UTF-8; null for what is not known.
#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "host/tracks/library.h"
#include "host/tracks/statistics.h"
#include "host/tracks/track_header.h"

namespace host {

using Json = nlohmann::ordered_json;  // keys in the order in which they are written

// "2024-05-12T08:15:06Z" of seconds since 1970; null for 0, too, which is no known time.
Json IsoTime(std::optional<long> seconds);
Json TextOrNull(const std::string& text);  // null for an empty one

// A track's header: name, file, points, length, area, start, end, duration, color, shown.
Json TrackJson(const TrackHeader& header);
Json TrackJson(CTrackProxy& track);  // of its header

// latitude, longitude, altitude, time; and speed and course where `withMotion`, since stored tracks know
// neither.
Json PointJson(const TckPt& point, bool withMotion);

Json StatisticsJson(const Statistics& statistics);

// In one line. Bytes that are no UTF-8 are replaced.
std::string JsonText(const Json& json);

// On standard output, indented, with a line end; bytes likewise, and controls of the terminal as "\u009b".
void PrintJson(const Json& json);

}  // namespace host
