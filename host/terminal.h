// What a terminal is asked for.
#pragma once

#include <cstddef>

namespace host {

bool IsTerminalForMessages();  // standard error
std::size_t TerminalWidth();   // of standard error [columns]; 80 when it does not tell

}  // namespace host
