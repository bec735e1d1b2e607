// What the caller gives the program, in UTF-8. One form a system: host/posix, host/windows.
#pragma once

#include <string>
#include <vector>

namespace host {

// The words behind the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

// A variable of the environment; empty when it is not set.
std::string Environment(const char* variable);

}  // namespace host
