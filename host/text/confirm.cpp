#include "host/text/confirm.h"

#include <unistd.h>

#include <iostream>

#include "host/text/display_width.h"
#include "qtrace.h"

namespace host {

bool CanAsk() { return ::isatty(STDIN_FILENO) != 0; }

bool Confirm(const std::string& question) {
    std::cout.flush();
    std::cerr << Printable(question) << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    UpString(answer);
    return answer == "Y" || answer == "YES";
}

}  // namespace host
