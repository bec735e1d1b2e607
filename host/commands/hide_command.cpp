// `qtrace hide`.
#include "host/tracks/visibility.h"

namespace host {

void AddHideCommand(Program& program) {
    AddVisibilityCommand(program, "hide", "Take tracks off the map", false);
}

}  // namespace host
