// What packaging/qtrace.bash knows of the command line, as tables for the shell.
#pragma once

#include <ostream>

#include "host/settings/cli_names.h"

namespace host {

// Three associative arrays, with keys like "qtrace record":
//   _qtrace_commands   the commands behind it
//   _qtrace_options    its options
//   _qtrace_values     what an option takes ("qtrace record --mode"), or the place of an argument ("qtrace
//                      record 1"; "qtrace merge ..." for this place and those behind it): @file, @dir, @track,
//                      @command or several of them, the words to choose from, or @text for what nobody can
//                      guess. Flags are not in it.
void PrintCompletion(const CLI::App& app, std::ostream& out);

}  // namespace host
