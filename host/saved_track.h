// A track file that the recording wrote, read back through the library.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/device_folder.h"

namespace host {

struct SavedTrack {
    std::filesystem::path file;
    std::string name;
    std::uint64_t points = 0;          // that its header states
    std::uint64_t pointsReadBack = 0;  // that are in it
    double length = 0;                 // [m]
    long start = 0, end = 0;           // [s since 1970]
};

// `fileName`: in the device's track folder. Nothing when the library cannot read it.
std::optional<SavedTrack> ReadSavedTrack(const DeviceFolder& device, const std::string& fileName);

}  // namespace host
