#include "host/text/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace host {
namespace {

std::size_t WidthOf(int stream) {
    constexpr std::size_t kUsual = 80;
    winsize size{};
    return ioctl(stream, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 ? kUsual : size.ws_col;
}

}  // namespace

bool IsTerminalForMessages() { return isatty(STDERR_FILENO) != 0; }
std::size_t WidthOfMessages() { return WidthOf(STDERR_FILENO); }
std::size_t WidthOfResults() { return isatty(STDOUT_FILENO) != 0 ? WidthOf(STDOUT_FILENO) : 0; }

}  // namespace host
