#include "host/recording/left_out.h"

namespace host {

// Nothing is left out.
void LeaveOutOptions(CLI::App&) {}

}  // namespace host
