// What a thread is to the system: platform/posix/thread.cpp, platform/windows/thread.cpp.
#pragma once

#include <chrono>

namespace platform {

using ThreadNumber = unsigned long;
inline constexpr ThreadNumber kNoThread = 0;

ThreadNumber NumberOfThisThread();

// Of a thread of this process that runs; from 0, the highest, to 7, the lowest, with 3 in the middle. Where the
// process may not have the priority, it stays as it is.
void SetPriorityOf(ThreadNumber thread, int priority);

// Says once that something is over. Not destroyed before everybody who waits has come back.
class Ending {
 public:
    Ending();
    ~Ending();
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;

    void Say();
    // Whether it was said by then.
    bool WaitFor(std::chrono::milliseconds atMost);

 private:
    struct State;
    State* m_pState;
};

// A thread that is made while this lives gets none of the signals that are meant for the host's threads.
class HostSignalsBlocked {
 public:
    HostSignalsBlocked();
    ~HostSignalsBlocked();
    HostSignalsBlocked(const HostSignalsBlocked&) = delete;
    HostSignalsBlocked& operator=(const HostSignalsBlocked&) = delete;

 private:
    struct State;
    State* m_pBefore;
};

}  // namespace platform
