#include "host/program.h"

#include <iostream>

#include "host/text/display_width.h"

namespace host {

int Fail(const std::string& command, const std::string& message) {
    std::cout.flush();
    std::cerr << "qtrace " << command << ": " << Printable(message) << '\n';
    return kFailed;
}

}  // namespace host
