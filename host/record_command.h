// `qtrace record`: NMEA 0183 from a file or a stream becomes a recording, and the recording a saved track.
#pragma once

#include <CLI/CLI.hpp>

namespace host {

// Adds the command to the program. Parsing it runs it, and leaves the program's exit code in `exitCode`.
void AddRecordCommand(CLI::App& program, int& exitCode);

}  // namespace host
