// Reads a source to its end, or until a signal asks to stop, and offers each fix to the recording.
#pragma once

#include "host/recording/live_recording.h"
#include "host/recording/record_options.h"
#include "host/recording/status_line.h"
#include "host/recording/stop_signals.h"
#include "host/source/fix_source.h"
#include "host/source/gate.h"

namespace host {

struct RecordedInput {
    FixSource::Got end = FixSource::Got::End;  // why it ended: End, Stopped or Error
    std::optional<GateCounts> gate;
};

RecordedInput RecordFixes(FixSource& source, LiveRecording& recording, const RecordArguments& arguments,
                          StatusLine& line, StopSignals& stop);

}  // namespace host
