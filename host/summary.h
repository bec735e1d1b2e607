// What the user is told on standard output when a recording has ended.
#pragma once

#include <string>

#include "host/live_recording.h"
#include "host/nmea_reader.h"
#include "host/saved_track.h"

namespace host {

void PrintInput(const std::string& name, const NmeaCounts& counts);
void PrintRecording(const LiveRecording& recording, const RecordSettings& settings);
void PrintSavedTrack(const SavedTrack& track);

// "45 no fix, 3 bad checksum"; empty when nothing was refused.
std::string RefusedByReason(const NmeaCounts& counts);

}  // namespace host
