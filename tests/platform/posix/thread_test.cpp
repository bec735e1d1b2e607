// Background threads and the signals of a POSIX system.
#include <signal.h>

#include <gtest/gtest.h>

#include "tests/platform/thread_work.h"

namespace {

using namespace platform;

unsigned long LooksAtItsSignals(void* argument) {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    *static_cast<std::atomic<bool>*>(argument) =
        sigismember(&blocked, SIGTERM) == 1 && sigismember(&blocked, SIGSEGV) == 0;
    return 0;
}

}  // namespace

TEST(Thread, HostSignals_StayWithTheHost) {
    std::atomic<bool> hostSignalsBlocked = false;
    const Handle thread = CreateThread(LooksAtItsSignals, &hostSignalsBlocked);
    ASSERT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(hostSignalsBlocked);
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
}
