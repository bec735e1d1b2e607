#include "host/text/terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <tuple>

namespace host {
namespace {

std::size_t WidthOf(int stream) {
    constexpr std::size_t kUsual = 80;
    winsize size{};
    return ioctl(stream, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 ? kUsual : size.ws_col;
}

}  // namespace

void PrepareStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (::fcntl(stream, F_GETFD) < 0) std::ignore = ::open("/dev/null", O_RDWR);
    std::signal(SIGXFSZ, SIG_IGN);  // a limit on file sizes is then an error like a full disk
}

bool IsTerminalForAnswers() { return isatty(STDIN_FILENO) != 0; }
bool IsTerminalForMessages() { return isatty(STDERR_FILENO) != 0; }
std::size_t WidthOfMessages() { return WidthOf(STDERR_FILENO); }
std::size_t WidthOfResults() { return isatty(STDOUT_FILENO) != 0 ? WidthOf(STDOUT_FILENO) : 0; }

}  // namespace host
