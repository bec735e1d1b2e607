// Showing and hiding tracks: what `qtrace show` and `qtrace hide` have in common.
#pragma once

#include <string>

#include "host/program.h"

namespace host {

// Adds the command `name`, which writes that visibility into the files of the tracks it is given.
void AddVisibilityCommand(Program& program, const std::string& name, const std::string& help, bool visible);

}  // namespace host
