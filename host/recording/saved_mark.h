// A note beside the recording: all of it is in a saved track. So the next run begins a track of its own, and
// nothing is saved twice. A recording without the note has points that are in no track yet.
#pragma once

#include <optional>
#include <string>

#include "host/recording/saved_track.h"
#include "host/settings/device_folder.h"

namespace host {

// Notes that the points of the ring file, byte by byte as it is now, are saved in this track. Otherwise says
// why it cannot be noted.
std::optional<std::string> MarkAsSaved(const DeviceFolder& device, const SavedTrack& track);

// Whether that is noted of the ring file as it is now, and the track is still there. A point more, a damaged
// byte, another recording in its place, a track that was deleted, renamed or cut: then it is not, since a track
// twice is better than none.
bool IsMarkedAsSaved(const DeviceFolder& device);

// To be done before the recording is cleared: the same drive recorded once more would have the same bytes.
// Otherwise says why not.
std::optional<std::string> RemoveSavedMark(const DeviceFolder& device);

}  // namespace host
