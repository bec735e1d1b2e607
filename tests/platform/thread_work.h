// What background threads do in the tests.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/thread.h"
#include "tests/support/machine.h"

inline void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

// One thread's work: it runs until it is asked to stop.
struct Work {
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> hasEnded = false;
    std::atomic<bool> mayRun = true;
    std::atomic<int> niceness = 0;

    static unsigned long UntilStopped(void* argument) {
        Work& work = *static_cast<Work*>(argument);
        work.hasBegun = true;
        while (!platform::StopRequested()) Pause();
        work.hasEnded = true;
        return 0;
    }

    // Until the test lets it end: a stop request is not heard.
    static unsigned long UntilReleased(void* argument) {
        Work& work = *static_cast<Work*>(argument);
        work.hasBegun = true;
        while (work.mayRun) {
            work.niceness = NicenessOfThisThread();
            Pause();
        }
        work.hasEnded = true;
        return 0;
    }

    static unsigned long Once(void* argument) {
        static_cast<Work*>(argument)->hasEnded = true;
        return 0;
    }

    void WaitUntilBegun() const {
        while (!hasBegun) Pause();
    }
    void WaitUntilEnded() const {
        while (!hasEnded) Pause();
    }
};
