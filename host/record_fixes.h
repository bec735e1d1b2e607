// Reads an NMEA stream to its end, or until a signal asks to stop, and offers each fix to the recording.
#pragma once

#include "host/input.h"
#include "host/live_recording.h"
#include "host/nmea_reader.h"
#include "host/stop_signals.h"

namespace host {

struct RecordedInput {
    NmeaCounts nmea;
    Input::Got end = Input::Got::End;  // why it ended: anything but Bytes
};

RecordedInput RecordFixes(Input& input, LiveRecording& recording, StopSignals& stop);

}  // namespace host
