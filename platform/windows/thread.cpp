// Threads of the system behind numbers of our own: the system's handle is closed when its thread has ended,
// whether or not anybody closes ours. The system's own TerminateThread is never used: it would leave locks and
// memory behind.
#include "platform/thread.h"

#include <windows.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>

namespace platform {

namespace {

// How long TerminateThread waits. A body looks at StopRequested() between files: this is far more than one
// takes.
constexpr DWORD kLongestWaitMs = 5000;

constexpr Handle kFirstHandle = 0x10001;  // no number of a search

struct Thread {
    ~Thread() {
        if (system != nullptr) ::CloseHandle(system);
    }
    std::atomic<bool> stopRequested = false;
    std::atomic<bool> isClosed = false;
    HANDLE system = nullptr;
    Handle number = 0;
    unsigned long (*body)(void*) = nullptr;
    void* argument = nullptr;
};

// Threads that run, by handle. Never destroyed: one may still run while the process ends.
struct Threads {
    std::mutex guard;
    std::map<Handle, std::shared_ptr<Thread>> running;
    Handle nextHandle = kFirstHandle;
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
    return handle >= kFirstHandle && handle < threads.nextHandle;
}

void Unregister(Handle handle) {
    Threads& threads = TheThreads();
    const std::lock_guard lock(threads.guard);
    threads.running.erase(handle);
}

DWORD WINAPI Run(void* number) {
    const auto thread = Running(reinterpret_cast<Handle>(number));
    t_pCurrent = thread.get();
    const unsigned long result = thread->body(thread->argument);
    t_pCurrent = nullptr;
    Unregister(thread->number);
    return result;
}

// The device counts its priorities from 0, the highest, to 7; the system from +2 down to -2, with 0 in the
// middle.
int SystemPriority(int priority) {
    switch (priority) {
        case 0:
            return THREAD_PRIORITY_TIME_CRITICAL;
        case 1:
            return THREAD_PRIORITY_HIGHEST;
        case 2:
            return THREAD_PRIORITY_ABOVE_NORMAL;
        case 3:
            return THREAD_PRIORITY_NORMAL;
        case 4:
            return THREAD_PRIORITY_BELOW_NORMAL;
        case 5:
            return THREAD_PRIORITY_LOWEST;
        default:
            return THREAD_PRIORITY_IDLE;
    }
}

}  // namespace

Handle CreateThread(unsigned long (*body)(void*), void* argument) {
    const auto thread = std::make_shared<Thread>();
    thread->body = body;
    thread->argument = argument;
    Threads& threads = TheThreads();
    const std::lock_guard lock(
        threads.guard);  // held until the system's handle is known: the thread waits for it
    thread->number = threads.nextHandle++;
    threads.running.emplace(thread->number, thread);
    thread->system = ::CreateThread(nullptr, 0, Run, reinterpret_cast<void*>(thread->number), 0, nullptr);
    if (thread->system != nullptr) return thread->number;
    threads.running.erase(thread->number);
    return kInvalidHandle;
}

bool SetThreadPriority(Handle handle, int priority) {
    const auto thread = Running(handle);
    if (thread == nullptr) return WasGiven(handle);
    if (thread->isClosed) return false;
    ::SetThreadPriority(thread->system, SystemPriority(priority));
    return true;
}

bool TerminateThread(Handle handle) {
    const auto thread = Running(handle);
    if (thread == nullptr) return WasGiven(handle);
    if (thread->isClosed) return false;
    thread->stopRequested = true;
    if (thread.get() == t_pCurrent) return false;
    return ::WaitForSingleObject(thread->system, kLongestWaitMs) == WAIT_OBJECT_0;
}

bool CloseHandle(Handle handle) {
    const auto thread = Running(handle);
    return thread == nullptr ? WasGiven(handle) : !thread->isClosed.exchange(true);
}

bool StopRequested() { return t_pCurrent != nullptr && t_pCurrent->stopRequested; }

}  // namespace platform
