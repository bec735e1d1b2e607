#include "host/program.h"

#include <iostream>

namespace host {

int Fail(const std::string& command, const std::string& message) {
    std::cout.flush();
    std::cerr << "qtrace " << command << ": " << message << '\n';
    return kFailed;
}

}  // namespace host
