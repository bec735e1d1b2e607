// A track file that the recording wrote, read back through the library.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "host/settings/device_folder.h"

namespace host {

struct SavedTrack {
    std::filesystem::path file;
    std::string name;                  // in the code page
    std::uint64_t points = 0;          // that its header states
    std::uint64_t pointsReadBack = 0;  // that are in it
    double length = 0;                 // [m]
    long start = 0, end = 0;           // [s since 1970]
};

// `file`: in one of the device's track folders. Nothing when the library cannot read it.
std::optional<SavedTrack> ReadSavedTrack(const DeviceFolder& device, const std::filesystem::path& file);

// The track files in the device and on its card.
std::set<std::filesystem::path> TrackFilesOf(const DeviceFolder& device);

// Those of `now` that are not in `before`.
std::set<std::filesystem::path> NewFiles(const std::set<std::filesystem::path>& before,
                                         const std::set<std::filesystem::path>& now);

}  // namespace host
