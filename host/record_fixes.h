// Reads a source to its end, or until a signal asks to stop, and offers each fix to the recording.
#pragma once

#include "host/fix_source.h"
#include "host/gate.h"
#include "host/live_recording.h"
#include "host/record_options.h"
#include "host/status_line.h"
#include "host/stop_signals.h"

namespace host {

struct RecordedInput {
    FixSource::Got end = FixSource::Got::End;  // why it ended: End, Stopped or Error
    std::optional<GateCounts> gate;
};

RecordedInput RecordFixes(FixSource& source, LiveRecording& recording, const RecordArguments& arguments,
                          StatusLine& line, StopSignals& stop);

}  // namespace host
