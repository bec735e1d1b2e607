// The manual page qtrace(1): commands and options from the command line itself, the rest from
// host/settings/manual_text.h.
#pragma once

#include <ostream>

#include "host/settings/cli_names.h"

namespace host {

// In roff, with the man macros. The same on every machine and on every day.
void PrintManual(const CLI::App& app, std::ostream& out);

}  // namespace host
