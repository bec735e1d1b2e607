#include "host/recording/saved_track.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <vector>

#include "host/settings/device_path.h"
#include "host/text/extension.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "qtrace.h"

namespace fs = std::filesystem;

namespace host {
namespace {

std::string DevicePathOf(const DeviceFolder& device, const fs::path& file) {
    return FromUtf8(DevicePath(Utf8Of(file.lexically_relative(device.Root()))));
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

std::set<fs::path> TrackFilesOf(const DeviceFolder& device) {
    std::set<fs::path> files;
    for (const fs::path& folder : {device.Tracks(), device.CardTracks()}) {
        std::error_code unreadable;
        for (const auto& entry : fs::directory_iterator(folder, unreadable))
            if (IsTrackFile(entry.path())) files.insert(entry.path());
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
