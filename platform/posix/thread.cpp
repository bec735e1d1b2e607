// Background threads. They are detached: a handle that nobody closes holds nothing, and a process may end while
// one runs.
#include "platform/thread.h"

#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/posix/handle.h"

namespace platform {

namespace {

// How long TerminateThread waits. A body looks at StopRequested() between files: this is far more than one
// takes.
constexpr std::chrono::seconds kLongestWait{5};

struct Thread {
    std::atomic<bool> stopRequested = false;
    std::atomic<bool> isClosed = false;
    std::mutex guard;  // of the rest
    std::condition_variable ended;
    bool hasEnded = false;
    pid_t systemNumber = 0;  // 0 before it runs and after it has ended
    int niceness = 0;
};

// Threads that run, by handle. Never destroyed: one may still run while the process ends.
struct Threads {
    std::mutex guard;
    std::map<Handle, std::shared_ptr<Thread>> running;
    Handle nextHandle = kFirstThread;
};

Threads& TheThreads() {
    static Threads& threads = *new Threads;
    return threads;
}

thread_local Thread* t_pCurrent = nullptr;

std::shared_ptr<Thread> Running(Handle handle) {
    Threads& threads = TheThreads();
    const std::lock_guard lock(threads.guard);
    const auto found = threads.running.find(handle);
    return found == threads.running.end() ? nullptr : found->second;
}

// Whether CreateThread ever gave this handle. One of a thread that does not run any more then needs nothing
// done.
bool WasGiven(Handle handle) {
    Threads& threads = TheThreads();
    const std::lock_guard lock(threads.guard);
    return handle >= kFirstThread && handle < threads.nextHandle && (handle - kFirstThread) % kHandleStep == 0;
}

Handle Register(const std::shared_ptr<Thread>& thread) {
    Threads& threads = TheThreads();
    const std::lock_guard lock(threads.guard);
    const Handle handle = threads.nextHandle;
    threads.nextHandle += kHandleStep;
    threads.running.emplace(handle, thread);
    return handle;
}

void Unregister(Handle handle) {
    Threads& threads = TheThreads();
    const std::lock_guard lock(threads.guard);
    threads.running.erase(handle);
}

// On Linux a niceness belongs to the one thread. Where the process may not have it, it stays as it is.
void ApplyNiceness(const Thread& thread) {
    if (thread.systemNumber != 0)
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(thread.systemNumber), thread.niceness);
}

void Begin(Thread& thread) {
    t_pCurrent = &thread;
    const std::lock_guard lock(thread.guard);
    thread.systemNumber = ::gettid();
    if (thread.niceness != 0) ApplyNiceness(thread);
}

void End(Thread& thread) {
    t_pCurrent = nullptr;
    const std::lock_guard lock(thread.guard);
    thread.systemNumber = 0;
    thread.hasEnded = true;
    thread.ended.notify_all();
}

// The host's signals stay with the host's threads: a thread inherits what is blocked where it is made. Those of
// its own faults are not blocked.
class SignalsBlocked {
 public:
    SignalsBlocked() {
        sigset_t blocked;
        sigfillset(&blocked);
        for (int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS})
            sigdelset(&blocked, fault);
        pthread_sigmask(SIG_SETMASK, &blocked, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
    sigset_t m_before;
};

void Run(const std::shared_ptr<Thread>& thread, Handle handle, unsigned long (*body)(void*), void* argument) {
    Begin(*thread);
    body(argument);
    Unregister(handle);
    End(*thread);
}

// 0 is the highest of the eight priorities, 3 the normal one and 7 the lowest.
int NicenessOf(int priority) {
    constexpr int kNormal = 3, kNicenessPerStep = 5;
    return std::clamp((priority - kNormal) * kNicenessPerStep, -20, 19);
}

}  // namespace

Handle CreateThread(unsigned long (*body)(void*), void* argument) {
    const auto thread = std::make_shared<Thread>();
    const Handle handle = Register(thread);
    const SignalsBlocked blocked;
    try {
        std::thread(Run, thread, handle, body, argument).detach();
        return handle;
    } catch (const std::system_error&) {
        Unregister(handle);
        return kInvalidHandle;
    }
}

bool SetThreadPriority(Handle handle, int priority) {
    const auto thread = Running(handle);
    if (thread == nullptr) return WasGiven(handle);
    if (thread->isClosed) return false;
    const std::lock_guard lock(thread->guard);
    thread->niceness = NicenessOf(priority);
    ApplyNiceness(*thread);
    return true;
}

bool TerminateThread(Handle handle) {
    const auto thread = Running(handle);
    if (thread == nullptr) return WasGiven(handle);
    if (thread->isClosed) return false;
    thread->stopRequested = true;
    if (thread.get() == t_pCurrent) return false;
    std::unique_lock lock(thread->guard);
    return thread->ended.wait_for(lock, kLongestWait, [&] { return thread->hasEnded; });
}

bool CloseHandle(Handle handle) {
    const auto thread = Running(handle);
    return thread == nullptr ? WasGiven(handle) : !thread->isClosed.exchange(true);
}

bool StopRequested() { return t_pCurrent != nullptr && t_pCurrent->stopRequested; }

}  // namespace platform
