#include "host/recording/left_out.h"

#include <CLI/App.hpp>

namespace host {

// Nothing is left out.
void LeaveOutOptions(CLI::App&) {}

}  // namespace host
