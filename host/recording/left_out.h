// What this system's build of the program does without: host/posix/left_out.cpp, host/windows/left_out.cpp.
#pragma once

#include "host/settings/cli_names.h"

namespace host {

// Takes the options of `record` that need what is not there out of its help. Asked for all the same, they are
// wrong usage, which the message says.
void LeaveOutOptions(CLI::App& record);

}  // namespace host
