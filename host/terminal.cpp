#include "host/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace host {

bool IsTerminalForMessages() { return isatty(STDERR_FILENO) != 0; }

std::size_t TerminalWidth() {
    constexpr std::size_t kUsual = 80;
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsual;
    return size.ws_col;
}

}  // namespace host
