// Priorities and the end of a thread. The system has no signals that could reach one.
#include <windows.h>

#include <algorithm>

#include "platform/thread_on_system.h"

namespace platform {

namespace {

// By the device's priorities, of which the system has one less.
constexpr int kPriorities[] = {THREAD_PRIORITY_TIME_CRITICAL, THREAD_PRIORITY_HIGHEST,
                               THREAD_PRIORITY_ABOVE_NORMAL,  THREAD_PRIORITY_NORMAL,
                               THREAD_PRIORITY_BELOW_NORMAL,  THREAD_PRIORITY_LOWEST,
                               THREAD_PRIORITY_IDLE,          THREAD_PRIORITY_IDLE};

}  // namespace

ThreadNumber NumberOfThisThread() { return ::GetCurrentThreadId(); }

void SetPriorityOf(ThreadNumber thread, int priority) {
    const HANDLE opened = ::OpenThread(THREAD_SET_INFORMATION, FALSE, thread);
    if (opened == nullptr) return;
    ::SetThreadPriority(opened, kPriorities[std::clamp(priority, 0, 7)]);
    ::CloseHandle(opened);
}

// An event of the system: the condition variables that come with the compiler lose a wake-up now and then.
struct Ending::State {
    HANDLE event;
};

Ending::Ending() : m_pState(new State{::CreateEventW(nullptr, TRUE, FALSE, nullptr)}) {}

Ending::~Ending() {
    ::CloseHandle(m_pState->event);
    delete m_pState;
}

void Ending::Say() { ::SetEvent(m_pState->event); }

bool Ending::WaitFor(std::chrono::milliseconds atMost) {
    return ::WaitForSingleObject(m_pState->event, static_cast<DWORD>(atMost.count())) == WAIT_OBJECT_0;
}

struct HostSignalsBlocked::State {};

HostSignalsBlocked::HostSignalsBlocked() : m_pBefore(nullptr) {}

HostSignalsBlocked::~HostSignalsBlocked() = default;

}  // namespace platform
