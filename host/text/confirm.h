// Asking before something is lost.
#pragma once

#include <string>

namespace host {

// Whether there is somebody to ask: standard input is a terminal.
bool CanAsk();

// Asks on standard error. True for "y" and "yes", in any case; anything else, and the end of the input, is no.
bool Confirm(const std::string& question);

}  // namespace host
