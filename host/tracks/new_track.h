// New tracks made of stored ones: what reverse, merge and split share.
#pragma once

#include <optional>
#include <string>

#include "host/tracks/library.h"
#include "host/tracks/stored_track.h"

namespace host {

// The name for a new track, in the code page. Tells on standard error, on behalf of `command`, when it had to
// be changed; nothing, and told too, when no name is left or it is taken.
std::optional<std::string> NewTrackName(const Library& library, const std::string& command,
                                        const std::string& wanted);

// Stores these points under a free name, in the color and visibility of `like`, and reads them back point by
// point. An altitude that is not known is stored as that of the point before it, and that is told; a time that
// is not known cannot stand behind one that is. Otherwise says why not, and nothing is left behind.
std::optional<std::string> StorePoints(const Library& library, const Points& points, const std::string& name,
                                       const StoredTrack& like);

// Deletes the track and its file. Otherwise says why the file is still there.
std::optional<std::string> DeleteTrack(const Library& library, CTrackProxy& track);

}  // namespace host
