#include "host/saved_track.h"

#include <vector>

#include "qtrace.h"

namespace host {

std::optional<SavedTrack> ReadSavedTrack(const DeviceFolder& device, const std::string& fileName) {
    CTrackProxy proxy((std::string(CTrackMangSet::Instance()->GetNdExtTrackPath()) + '\\' + fileName).c_str());
    if (!proxy.Load(nullptr)) return std::nullopt;
    SavedTrack track;
    track.file = device.Tracks() / fileName;
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

}  // namespace host
