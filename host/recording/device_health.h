// What is wrong in a device folder: stored tracks, the live recording's files, and what interrupted programs
// left behind. No content is changed, only line ends of tracks where the library's list rewrites them; the live
// recording is not opened. The command: host/commands/check_command.cpp.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/recording/recording_view.h"
#include "host/tracks/gpx_reader.h"
#include "host/tracks/library.h"

namespace host {

struct TrackHealth {
    std::filesystem::path file;
    std::string name;  // UTF-8; empty when the library does not list it
    std::size_t points = 0;
    std::vector<std::string> problems;
    std::vector<std::string> notes;  // worth knowing, and nothing wrong
};

// Every file of a track, in the device and on the card, in name order. Each is read twice: by the library,
// which must list it and whose header must agree with its points, and by the reader of foreign documents, which
// tells where damage is.
std::vector<TrackHealth> CheckTracks(const Library& library);

// What a header states, against the points behind it.
struct StatedTrack {
    unsigned long points = 0;
    long start = 0, end = 0;  // [s since 1970]
    double length = 0;        // [m]
};
std::vector<std::string> CompareWithPoints(const StatedTrack& stated, const Points& points);

struct RecordingHealth {
    std::vector<std::string> problems;
    std::vector<std::string> notes;  // worth knowing, and nothing wrong
};
RecordingHealth CheckRecording(const RecordingView& files);

// Temporary files of processes that live no more, and damaged recordings that were put aside.
std::vector<std::string> FindLeftovers(const DeviceFolder& device);

}  // namespace host
