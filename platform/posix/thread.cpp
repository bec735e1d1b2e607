// Niceness, which on Linux belongs to the one thread, the end of a thread, and signals.
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "platform/thread_on_system.h"

namespace platform {

ThreadNumber NumberOfThisThread() { return static_cast<ThreadNumber>(::gettid()); }

// Normal is what the host's first thread has: a host may have been started with less.
void SetPriorityOf(ThreadNumber thread, int priority) {
    constexpr int kNormal = 3, kNicenessPerStep = 5;
    const int hosts = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid()));
    const int niceness = std::clamp(hosts + (priority - kNormal) * kNicenessPerStep, -20, 19);
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(thread), niceness);
}

struct Ending::State {
    std::mutex guard;
    std::condition_variable changed;
    bool isSaid = false;
};

Ending::Ending() : m_pState(new State) {}

Ending::~Ending() { delete m_pState; }

void Ending::Say() {
    const std::lock_guard lock(m_pState->guard);
    m_pState->isSaid = true;
    m_pState->changed.notify_all();
}

bool Ending::WaitFor(std::chrono::milliseconds atMost) {
    std::unique_lock lock(m_pState->guard);
    return m_pState->changed.wait_for(lock, atMost, [this] { return m_pState->isSaid; });
}

struct HostSignalsBlocked::State {
    sigset_t signals;
};

// A thread inherits what is blocked where it is made. The signals of its own faults are not blocked.
HostSignalsBlocked::HostSignalsBlocked() : m_pBefore(new State) {
    sigset_t blocked;
    sigfillset(&blocked);
    for (int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS}) sigdelset(&blocked, fault);
    pthread_sigmask(SIG_SETMASK, &blocked, &m_pBefore->signals);
}

HostSignalsBlocked::~HostSignalsBlocked() {
    pthread_sigmask(SIG_SETMASK, &m_pBefore->signals, nullptr);
    delete m_pBefore;
}

}  // namespace platform
