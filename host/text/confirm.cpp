#include "host/text/confirm.h"

#include <iostream>

#include "host/text/display_width.h"
#include "host/text/terminal.h"
#include "qtrace.h"

namespace host {

bool CanAsk() { return IsTerminalForAnswers(); }

bool Confirm(const std::string& question) {
    std::cout.flush();
    std::cerr << Printable(question) << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    UpString(answer);
    return answer == "Y" || answer == "YES";
}

}  // namespace host
