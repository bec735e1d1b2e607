// What the user is told on standard output when a recording has ended.
#pragma once

#include <optional>

#include "host/recording/live_recording.h"
#include "host/recording/saved_track.h"
#include "host/source/fix_source.h"
#include "host/source/gate.h"

namespace host {

// `gate`: what it refused, when there was one.
void PrintInput(const FixSource& source, const std::optional<GateCounts>& gate);
void PrintRecording(const LiveRecording& recording, const RecordSettings& settings);
void PrintSavedTrack(const SavedTrack& track);

}  // namespace host
