#include "host/settings/environment.h"

#include <algorithm>
#include <cstdlib>

namespace host {

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + std::min(argc, 1), argv + argc}; }

std::string Environment(const char* variable) {
    const char* value = std::getenv(variable);
    return value == nullptr ? "" : value;
}

}  // namespace host
