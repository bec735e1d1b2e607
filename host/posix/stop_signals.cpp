#include "host/recording/stop_signals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace host {
namespace {

bool IsIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t StopSet() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        if (!IsIgnored(signal)) sigaddset(&set, signal);
    return set;
}

}  // namespace

struct StopSignals::Watch {
    sigset_t before{};
    int signals = -1;
};

StopSignals::StopSignals() : m_watch(std::make_unique<Watch>()) {
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t set = StopSet();
    pthread_sigmask(SIG_BLOCK, &set, &m_watch->before);
    m_watch->signals = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_watch->signals < 0)
        throw std::system_error(errno, std::generic_category(), "signals cannot be watched");
}

StopSignals::~StopSignals() {
    signalfd_siginfo taken;
    while (read(m_watch->signals, &taken, sizeof taken) > 0)
        continue;  // asked and answered: the stop was clean
    close(m_watch->signals);
    pthread_sigmask(SIG_SETMASK, &m_watch->before, nullptr);
}

Awaited StopSignals::WaitForInput(int descriptor, std::chrono::milliseconds atMost) {
    std::array<pollfd, 2> watched = {pollfd{m_watch->signals, POLLIN, 0}, pollfd{descriptor, POLLIN, 0}};
    const int time = static_cast<int>(std::max<std::chrono::milliseconds::rep>(atMost.count(), 0));
    if (!m_requested && poll(watched.data(), watched.size(), time) < 0) return Awaited::TimeIsUp;
    if (watched[0].revents != 0) m_requested = true;
    if (m_requested) return Awaited::Stop;
    return watched[1].revents != 0 ? Awaited::Ready : Awaited::TimeIsUp;
}

bool StopSignals::Sleep(std::chrono::milliseconds time) {
    constexpr int kNoDescriptor = -1;  // poll passes over it
    return WaitForInput(kNoDescriptor, time) != Awaited::Stop;
}

}  // namespace host
