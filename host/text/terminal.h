// What a terminal is asked for, and the standard streams. One form a system: host/posix, host/windows.
#pragma once

#include <cstddef>

namespace host {

// Before anything else of the program: a standard stream that came closed would let the next file that is
// opened take its place. Texts are UTF-8 and stay as they are, byte by byte.
void PrepareStandardStreams();

bool IsTerminalForAnswers();    // standard input
bool IsTerminalForMessages();   // standard error
std::size_t WidthOfMessages();  // of standard error [columns]; 80 when it does not tell
std::size_t WidthOfResults();   // of standard output [columns]; 0 when it is no terminal

}  // namespace host
