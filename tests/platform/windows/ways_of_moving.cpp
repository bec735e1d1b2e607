// The system moves without replacing by itself.
#include "tests/platform/file_names_fixture.h"

std::vector<WayOfMoving> WaysOfMoving() {
    return {{"ByTheSystem", [] {}}};
}
