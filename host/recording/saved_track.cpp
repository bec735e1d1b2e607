#include "host/recording/saved_track.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <vector>

#include "host/text/text.h"
#include "qtrace.h"

namespace fs = std::filesystem;

namespace host {
namespace {

std::string DevicePathOf(const DeviceFolder& device, const fs::path& file) {
    std::string path = FromUtf8('/' + file.lexically_relative(device.Root()).generic_string());
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

}  // namespace

std::optional<SavedTrack> ReadSavedTrack(const DeviceFolder& device, const fs::path& file) {
    CTrackProxy proxy(DevicePathOf(device, file).c_str());
    if (!proxy.Load(nullptr)) return std::nullopt;
    SavedTrack track;
    track.file = file;
    track.name = proxy.GetName();
    track.points = proxy.GetPtCount();
    track.length = proxy.GetLength();
    track.start = proxy.GetStartTime();
    track.end = proxy.GetEndTime();
    std::vector<TckPt, je_allocator<TckPt>> points;
    proxy.GetPtList(points);
    track.pointsReadBack = points.size();
    return track;
}

fs::path FileOf(const DeviceFolder& device, const std::string& devicePath) {
    std::string path = ToUtf8(devicePath);
    std::replace(path.begin(), path.end(), '\\', '/');
    return device.Root() / fs::path(path).relative_path();
}

std::set<fs::path> TrackFilesOf(const DeviceFolder& device) {
    std::set<fs::path> files;
    for (const fs::path& folder : {device.Tracks(), device.CardTracks()}) {
        std::error_code unreadable;
        for (const auto& entry : fs::directory_iterator(folder, unreadable))
            if (entry.path().extension() == ".gpx") files.insert(entry.path());
    }
    return files;
}

std::set<fs::path> NewFiles(const std::set<fs::path>& before, const std::set<fs::path>& now) {
    std::set<fs::path> fresh;
    std::set_difference(now.begin(), now.end(), before.begin(), before.end(),
                        std::inserter(fresh, fresh.end()));
    return fresh;
}

}  // namespace host
