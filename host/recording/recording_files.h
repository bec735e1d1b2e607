// The files of the live recording as they lie on disk, looked at without the library: it does not look whether
// its writes arrive. The bytes: docs/formats/log-file.md.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "host/settings/device_folder.h"

namespace host {

std::filesystem::path RingFileOf(const DeviceFolder& device);

// The points that the ring file holds; none when it cannot be read or its size is not that of its points.
std::optional<std::uint64_t> PointsInRingFile(const DeviceFolder& device);

// What is wrong with the ring file, when it does not hold so many points.
std::optional<std::string> WhyIncomplete(const DeviceFolder& device, std::uint64_t points);

// Why the ring file cannot be opened or made.
std::string WhyNotOpened(const DeviceFolder& device);

// Damaged ring files that the library has put aside so far: TmpTk*.bk.
std::set<std::filesystem::path> PutAsideFiles(const DeviceFolder& device);

// Why a folder takes no file, as far as trying tells: "No space left on device", "Permission denied";
// or that a file could be written: then whatever kept it from that is over, or it is something else.
std::string WhyNothingIsWritten(const std::filesystem::path& folder);

}  // namespace host
