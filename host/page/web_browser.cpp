#include "host/page/web_browser.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <array>

namespace host {

// The browser gets no say on our streams, and Ctrl-C reaches it as it would from the desktop: we block signals
// for ourselves only.
bool OpenInBrowser(const std::string& url) {
    std::string program = "xdg-open", page = url;
    const std::array<char*, 3> command = {program.data(), page.data(), nullptr};
    posix_spawn_file_actions_t streams;
    posix_spawnattr_t attributes;
    sigset_t none;
    sigemptyset(&none);
    posix_spawn_file_actions_init(&streams);
    for (const int stream : {0, 1, 2})
        posix_spawn_file_actions_addopen(&streams, stream, "/dev/null", O_RDWR, 0);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    pid_t child = 0;
    const int problem = posix_spawnp(&child, command[0], &streams, &attributes, command.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&streams);
    return problem == 0;
}

}  // namespace host
