// Background threads. They are detached: a handle that nobody closes holds nothing, and a process may end while
// one runs. What a system alone can do with a thread: platform/thread_on_system.h.
#include "platform/thread.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/registry.h"
#include "platform/thread_on_system.h"

namespace platform {

namespace {

// How long TerminateThread waits. A body looks at StopRequested() between files: this is far more than one
// takes.
constexpr std::chrono::seconds kLongestWait{5};

constexpr int kNormalPriority = 3;

struct Thread {
    std::atomic<bool> stopRequested = false;
    std::atomic<bool> isClosed = false;
    Ending ending;
    std::mutex guard;                 // of the rest
    ThreadNumber number = kNoThread;  // while it runs
    int priority = kNormalPriority;
};

using Threads = Registry<std::shared_ptr<Thread>>;

// Those that run.
Threads& TheThreads() {
    static Threads& threads = *new Threads(kFirstThread);
    return threads;
}

thread_local Thread* t_pCurrent = nullptr;

// Null for a thread that does not run any more: then nothing needs to be done.
std::shared_ptr<Thread> Running(Handle handle) {
    return TheThreads().With(handle, std::shared_ptr<Thread>(), [](const auto& thread) { return thread; });
}

void Begin(Thread& thread) {
    t_pCurrent = &thread;
    const std::lock_guard lock(thread.guard);
    thread.number = NumberOfThisThread();
    if (thread.priority != kNormalPriority) SetPriorityOf(thread.number, thread.priority);
}

void End(Thread& thread) {
    t_pCurrent = nullptr;
    {
        const std::lock_guard lock(thread.guard);
        thread.number = kNoThread;
    }
    thread.ending.Say();
}

void Run(const std::shared_ptr<Thread>& thread, Handle handle, unsigned long (*body)(void*), void* argument) {
    Begin(*thread);
    body(argument);
    TheThreads().Remove(handle);
    End(*thread);
}

}  // namespace

Handle CreateThread(unsigned long (*body)(void*), void* argument) {
    const auto thread = std::make_shared<Thread>();
    const Handle handle = TheThreads().Add(thread);
    const HostSignalsBlocked blocked;
    try {
        std::thread(Run, thread, handle, body, argument).detach();
        return handle;
    } catch (const std::system_error&) {
        TheThreads().Remove(handle);
        return kInvalidHandle;
    }
}

bool SetThreadPriority(Handle handle, int priority) {
    const auto thread = Running(handle);
    if (thread == nullptr) return TheThreads().WasGiven(handle);
    if (thread->isClosed) return false;
    const std::lock_guard lock(thread->guard);
    thread->priority = priority;
    if (thread->number != kNoThread) SetPriorityOf(thread->number, priority);
    return true;
}

bool TerminateThread(Handle handle) {
    const auto thread = Running(handle);
    if (thread == nullptr) return TheThreads().WasGiven(handle);
    if (thread->isClosed) return false;
    thread->stopRequested = true;
    if (thread.get() == t_pCurrent) return false;
    return thread->ending.WaitFor(kLongestWait);
}

bool CloseHandle(Handle handle) {
    const auto thread = Running(handle);
    return thread == nullptr ? TheThreads().WasGiven(handle) : !thread->isClosed.exchange(true);
}

bool StopRequested() { return t_pCurrent != nullptr && t_pCurrent->stopRequested; }

}  // namespace platform
