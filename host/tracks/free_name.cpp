#include "host/tracks/free_name.h"

#include <filesystem>
#include <system_error>

#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/track_name.h"

namespace host {
namespace {

// A file that cannot be read is not listed, and must not be written over.
bool IsTaken(CTrackMan& manager, const DeviceFolder& device, const std::string& name) {
    std::error_code unreadable;
    const std::filesystem::path file = PathOf(ToUtf8(name) + ".gpx");
    return manager.GetTrack(name) != nullptr || manager.GetTrackByFile(name) != nullptr ||
           std::filesystem::exists(device.Tracks() / file, unreadable) ||
           std::filesystem::exists(device.CardTracks() / file, unreadable);
}

}  // namespace

std::string FreeTrackName(CTrackMan& manager, const DeviceFolder& device, const std::string& name) {
    std::string free = name;
    for (int number = 2; IsTaken(manager, device, free); ++number) {
        const std::string suffix = '_' + std::to_string(number);
        free = CutName(name, kLongestName - suffix.size()) + suffix;
    }
    return free;
}

}  // namespace host
