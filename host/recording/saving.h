// Saving the recording as a track, as the commands `record` and `save` do it: the name from the user, the check
// of what is on disk, and what the user is told.
#pragma once

#include <optional>
#include <string>

#include "host/recording/live_recording.h"

namespace host {

// The name (code page) for a text of the user's (UTF-8), who is told when it had to be changed. None, and the
// user is told why, when nothing is left of it. An empty text stays empty: the name is then made from the time.
std::optional<std::string> NameToSave(const std::string& command, const std::string& text,
                                      const HostSettings& settings);

// Saves the whole recording and prints what was saved. Otherwise tells why not and where the recording is.
int SaveAndPrint(const std::string& command, const DeviceFolder& device, LiveRecording& recording,
                 const std::string& name);

}  // namespace host
