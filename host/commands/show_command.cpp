// `qtrace show`.
#include "host/tracks/visibility.h"

namespace host {

void AddShowCommand(Program& program) { AddVisibilityCommand(program, "show", "Show tracks on the map", true); }

}  // namespace host
