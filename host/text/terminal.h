// What a terminal is asked for.
#pragma once

#include <cstddef>

namespace host {

bool IsTerminalForMessages();   // standard error
std::size_t WidthOfMessages();  // of standard error [columns]; 80 when it does not tell
std::size_t WidthOfResults();   // of standard output [columns]; 0 when it is no terminal

}  // namespace host
