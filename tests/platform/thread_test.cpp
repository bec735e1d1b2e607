// Background threads that end by consent.
#include <cstdlib>
#include <future>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/thread_work.h"

namespace {

using namespace platform;

TEST(Thread, Body_GetsItsArgument) {
    Work work;
    const Handle thread = CreateThread(Work::Once, &work);
    ASSERT_NE(thread, kInvalidHandle);
    work.WaitUntilEnded();
    EXPECT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(CloseHandle(thread));
}

TEST(Thread, Terminate_AsksAndWaitsForTheEnd) {
    Work work;
    const Handle thread = CreateThread(Work::UntilStopped, &work);
    work.WaitUntilBegun();
    EXPECT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(work.hasEnded);
    EXPECT_TRUE(CloseHandle(thread));
}

TEST(Thread, TerminateRightAfterTheStart_IsHeard) {
    for (int i = 0; i < 50; ++i) {
        Work work;
        const Handle thread = CreateThread(Work::UntilStopped, &work);
        ASSERT_TRUE(TerminateThread(thread));
        ASSERT_TRUE(work.hasEnded);
        ASSERT_TRUE(CloseHandle(thread));
    }
}

TEST(Thread, TerminateTwice_IsTrueBothTimes) {
    Work work;
    const Handle thread = CreateThread(Work::UntilStopped, &work);
    EXPECT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(TerminateThread(thread));
}

TEST(Thread, ThatDoesNotHear_IsGivenUpAfterAWhile) {
    Work work;
    const Handle thread = CreateThread(Work::UntilReleased, &work);
    work.WaitUntilBegun();
    EXPECT_FALSE(TerminateThread(thread));
    EXPECT_FALSE(work.hasEnded);
    work.mayRun = false;
    EXPECT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(work.hasEnded);
}

struct SelfStop {
    std::promise<Handle> itself;
    std::atomic<bool> answer = true;
    std::atomic<bool> heard = false;

    static unsigned long Run(void* argument) {
        SelfStop& test = *static_cast<SelfStop*>(argument);
        const Handle itself = test.itself.get_future().get();
        test.answer =
            TerminateThread(itself) || TerminateThread(itself);  // waiting for itself twice would be too long
        test.heard = StopRequested();
        return 0;
    }
};

TEST(Thread, ThatStopsItself_OnlyAsks) {
    SelfStop test;
    const Handle thread = CreateThread(SelfStop::Run, &test);
    test.itself.set_value(thread);
    EXPECT_TRUE(TerminateThread(thread));
    EXPECT_FALSE(test.answer);
    EXPECT_TRUE(test.heard);
}

TEST(Thread, StopRequest_ConcernsThatThreadAlone) {
    Work first, second;
    const Handle a = CreateThread(Work::UntilStopped, &first), b = CreateThread(Work::UntilStopped, &second);
    EXPECT_FALSE(StopRequested());
    EXPECT_TRUE(TerminateThread(a));
    EXPECT_FALSE(second.hasEnded);
    EXPECT_FALSE(StopRequested());
    EXPECT_TRUE(TerminateThread(b));
}

TEST(Thread, ClosedHandle_LeavesTheThreadRunning) {
    Work work;
    const Handle thread = CreateThread(Work::UntilReleased, &work);
    work.WaitUntilBegun();
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_FALSE(CloseHandle(thread));
    EXPECT_FALSE(TerminateThread(thread));
    EXPECT_FALSE(SetThreadPriority(thread, 4));
    EXPECT_FALSE(work.hasEnded);
    work.mayRun = false;
    work.WaitUntilEnded();
}

TEST(Thread, UnclosedHandles_LeaveNothingBehind) {
    for (int i = 0; i < 200; ++i) {  // the leak checker looks at the rest
        Work work;
        const Handle thread = CreateThread(Work::Once, &work);
        ASSERT_NE(thread, kInvalidHandle);
        ASSERT_TRUE(TerminateThread(thread));
    }
}

TEST(Thread, HandleOfAnEndedThread_IsClosedAlready) {
    Work work;
    const Handle thread = CreateThread(Work::Once, &work);
    ASSERT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_TRUE(TerminateThread(thread));
}

TEST(Thread, HandleThatIsNone_IsHarmless) {
    for (Handle none : {kInvalidHandle, Handle{0}, Handle{1}, Handle{-2}, Handle{1000000}}) {
        EXPECT_FALSE(TerminateThread(none));
        EXPECT_FALSE(CloseHandle(none));
        EXPECT_FALSE(SetThreadPriority(none, 4));
    }
}

TEST(Thread, BelowNormalPriority_MakesThatThreadNicer) {
    Work work;
    const int before = NicenessOfThisThread();
    const Handle thread = CreateThread(Work::UntilReleased, &work);
    EXPECT_TRUE(SetThreadPriority(thread, 4));
    if (before < kGreatestNiceness) {
        for (int waited = 0; work.niceness <= before && waited < 5000; ++waited) Pause();
        EXPECT_GT(work.niceness, before);
    }
    EXPECT_EQ(NicenessOfThisThread(), before);
    work.mayRun = false;
    EXPECT_TRUE(TerminateThread(thread));
}

TEST(Thread, PriorityOfAnEndedThread_IsTrue) {
    Work work;
    const Handle thread = CreateThread(Work::Once, &work);
    ASSERT_TRUE(TerminateThread(thread));
    EXPECT_TRUE(SetThreadPriority(thread, 4));
    EXPECT_TRUE(CloseHandle(thread));
}

TEST(Thread, MayBeStoppedFromSeveralThreads) {
    Work work;
    const Handle thread = CreateThread(Work::UntilStopped, &work);
    std::vector<std::thread> callers;
    std::atomic<int> ended = 0;
    for (int i = 0; i < 4; ++i) callers.emplace_back([&] { ended += TerminateThread(thread) ? 1 : 0; });
    for (std::thread& caller : callers) caller.join();
    EXPECT_EQ(ended, 4);
}

unsigned long CallUsForEver(void*) {
    for (;;) {
        StopRequested();
        const Handle none = 0;
        CloseHandle(none);
    }
}

void EndProcessWhileAThreadRuns() {
    CreateThread(CallUsForEver, nullptr);
    Pause();
    std::exit(0);
}

TEST(ThreadDeathTest, ProcessMayEndWhileOneRuns) {
    GTEST_FLAG_SET(death_test_style, CanRunItself() ? "threadsafe" : "fast");
    EXPECT_EXIT(EndProcessWhileAThreadRuns(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
