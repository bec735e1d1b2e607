// Loading runs on a thread of its own: what others see of it, what it calls, and what is left when it is
// stopped.
#include <atomic>

#include "tests/library/library_fixture.h"
#include "tests/library/log_on_disk.h"

namespace {

// Opens once for one who waits.
class Gate {
 public:
    void Open() { m_isOpen = true; }
    void Pass() {
        while (!m_isOpen.exchange(false)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

 private:
    std::atomic<bool> m_isOpen = false;
};

// The map layer of a host, which is told that the library is loaded.
struct Map {
    inline static std::atomic<int> calls{0};
    inline static std::atomic<bool> wasLoading{false};
    inline static std::atomic<unsigned long> tracks{0};
    inline static std::atomic<std::thread::id> caller{};
    inline static std::atomic<int> niceness{0};  // of the calling thread
    inline static Gate entered;
    inline static Gate mayLeave;

    static void OnLoaded() {
        wasLoading = CTrackMan::Instance()->IsLoadingDataToMap();
        tracks = CTrackMan::Instance()->GetCnt();
        caller = std::this_thread::get_id();
        ++calls;
    }
    static void OnLoadedAndHold() {
        OnLoaded();
        entered.Open();
        mayLeave.Pass();
        niceness = NicenessOfThisThread();
    }
    static void OnLoadedAndStop() {
        OnLoaded();
        CTrackMan::Instance()->StopLoadDataToMapThread();
        entered.Open();
    }
    static void OnLoadedAndLoadOnceMore() {
        OnLoaded();
        if (calls == 1) CTrackMan::Instance()->LoadData();
    }
};

// Whether there are no more threads than this: one that is over may still be on its way out.
bool AreThreadsGone(std::size_t before) {
    for (int i = 0; RunningThreads() > before && i < 10000; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return RunningThreads() <= before;
}

}  // namespace

class LoadingThread : public LibraryTest {
 protected:
    LoadingThread() { Map::calls = 0; }

    static constexpr int kMany = 1000;
    void StoreMany() const {
        for (int i = 0; i < kMany; ++i)
            Store("walk" + std::to_string(i), {.name = "Walk " + std::to_string(i)});
    }
    static void Ride(int first, int end) {
        for (int i = first; i < end; ++i) Library().SaveToTempTrack(RideFix(i));
    }
};

TEST_F(LoadingThread, LoadCallback_RunsOnTheLoadingThreadWithTheWholeList) {
    Store("walk");
    Store("run");
    Library().SetLoadTrackToMapCallFun(Map::OnLoaded);
    Load();
    EXPECT_EQ(Map::calls, 1);
    EXPECT_NE(Map::caller.load(), std::this_thread::get_id());
    EXPECT_EQ(Map::tracks, 2u);
}

TEST_F(LoadingThread, Flag_IsSetUntilTheCallbackHasReturned) {
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndHold);
    Library().LoadData();
    Map::entered.Pass();
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    EXPECT_TRUE(Map::wasLoading);
    Map::mayLeave.Open();
    WaitUntilLoaded();
    EXPECT_FALSE(TrackManInside::KnowsLoadThread(Library()));
}

TEST_F(LoadingThread, Thread_IsKnownWhileItRuns) {
    EXPECT_FALSE(TrackManInside::KnowsLoadThread(Library()));
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndHold);
    Library().LoadData();
    Map::entered.Pass();
    EXPECT_TRUE(TrackManInside::KnowsLoadThread(Library()));
    Map::mayLeave.Open();
    WaitUntilLoaded();
}

TEST_F(LoadingThread, Thread_HasLessPriorityThanTheHost) {
    const int hosts = NicenessOfThisThread();
    if (hosts == kGreatestNiceness) GTEST_SKIP() << "the host has the least priority there is";
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndHold);
    Library().LoadData();  // the priority is set when it has returned, not when the thread starts
    Map::mayLeave.Open();
    WaitUntilLoaded();
    EXPECT_GT(Map::niceness, hosts);
}

TEST_F(LoadingThread, WithoutACallback_LoadsAllTheSame) {
    Store("walk");
    Load();
    EXPECT_EQ(Library().GetCnt(), 1u);
}

TEST_F(LoadingThread, FixesDuringALoad_AreDroppedNotQueued) {
    Load();
    Library().Start();
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndHold);
    Library().LoadData();
    Map::entered.Pass();
    Ride(0, 100);
    Map::mayLeave.Open();
    WaitUntilLoaded();
    Ride(100, 161);
    Library().Stop();
    EXPECT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).Times(), RideTimes(100, 160));
}

TEST_F(LoadingThread, FlagPolledByAnotherThread_EndsFalse) {
    StoreMany();
    std::atomic<bool> isDone{false};
    std::atomic<int> sawLoading{0};
    std::thread poller([&] {
        while (!isDone)
            if (CTrackMan::Instance()->IsLoadingDataToMap()) ++sawLoading;
    });
    Load();
    isDone = true;
    poller.join();
    EXPECT_FALSE(Library().IsLoadingDataToMap());
    EXPECT_EQ(Library().GetCnt(), static_cast<unsigned long>(kMany));
}

TEST_F(LoadingThread, CallbackSetDuringALoad_IsNoRace) {
    StoreMany();
    Library().LoadData();
    for (int i = 0; Library().IsLoadingDataToMap() && i < 100000; ++i)
        Library().SetLoadTrackToMapCallFun(i % 2 == 0 ? Map::OnLoaded : nullptr);
    WaitUntilLoaded();
    EXPECT_LE(Map::calls, 1);
}

TEST_F(LoadingThread, StopBeforeAnyLoad_LeavesTheFlagSet) {
    Library().StopLoadDataToMapThread();
    EXPECT_TRUE(Library().IsLoadingDataToMap());
}

TEST_F(LoadingThread, StopAfterTheLoad_ChangesNothing) {
    Store("walk");
    Load();
    Library().StopLoadDataToMapThread();
    EXPECT_FALSE(Library().IsLoadingDataToMap());
    EXPECT_EQ(Library().GetCnt(), 1u);
}

TEST_F(LoadingThread, StopInTheMiddle_LeavesTheFlagSetAndNeverCallsBack) {
    StoreMany();
    Library().SetLoadTrackToMapCallFun(Map::OnLoaded);
    do {  // until one stop comes before the end
        Map::calls = 0;
        Library().LoadData();
        Library().StopLoadDataToMapThread();
    } while (Library().GetCnt() == kMany);
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    EXPECT_FALSE(TrackManInside::KnowsLoadThread(Library()));
    Load();
    EXPECT_EQ(Map::calls, 1);  // by the second load alone
}

TEST_F(LoadingThread, LoadRightAfterAStop_LoadsTheWholeLibrary) {
    StoreMany();
    for (int i = 0; i < 10; ++i) {
        Library().LoadData();
        Library().StopLoadDataToMapThread();
    }
    Load();
    EXPECT_EQ(Library().GetCnt(), static_cast<unsigned long>(kMany));
    EXPECT_FALSE(Library().IsLoadingDataToMap());
}

TEST_F(LoadingThread, LoadDuringALoad_LoadsTheWholeLibraryAndCallsBackOnce) {
    StoreMany();
    Library().SetLoadTrackToMapCallFun(Map::OnLoaded);
    Library().LoadData();
    Map::calls = 0;
    Load();
    EXPECT_EQ(Library().GetCnt(), static_cast<unsigned long>(kMany));
    EXPECT_LE(Map::calls, 2);
    EXPECT_GE(Map::calls, 1);
}

TEST_F(LoadingThread, AfterAStop_FixesAreDroppedUntilTheNextLoad) {
    StoreMany();
    Load();
    Library().Start();
    do {  // until one stop comes before the end
        Library().LoadData();
        Library().StopLoadDataToMapThread();
    } while (!Library().IsLoadingDataToMap());
    Ride(0, 100);
    Library().FlushOut();
    EXPECT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).count, 0u);
    Load();
    Ride(100, 161);
    EXPECT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).count, 60u);
}

TEST_F(LoadingThread, StopFromInsideTheCallback_EndsTheLoadAndKeepsTheFlag) {
    Store("walk");
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndStop);
    Library().LoadData();
    Map::entered.Pass();
    EXPECT_FALSE(TrackManInside::KnowsLoadThread(Library()));
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    Library().SetLoadTrackToMapCallFun(Map::OnLoaded);
    Load();
    EXPECT_EQ(Map::calls, 2);
    EXPECT_EQ(Library().GetCnt(), 1u);
}

TEST_F(LoadingThread, LoadFromInsideTheCallback_LoadsOnceMore) {
    Store("walk");
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndLoadOnceMore);
    Load();
    EXPECT_EQ(Map::calls, 2);
    EXPECT_EQ(Library().GetCnt(), 1u);
}

TEST_F(LoadingThread, StopByTwoThreads_EndsTheLoadOnce) {
    StoreMany();
    for (int i = 0; i < 10; ++i) {
        Library().LoadData();
        std::thread other([] { CTrackMan::Instance()->StopLoadDataToMapThread(); });
        Library().StopLoadDataToMapThread();
        other.join();
    }
    Load();
    EXPECT_EQ(Library().GetCnt(), static_cast<unsigned long>(kMany));
}

TEST_F(LoadingThread, EndOfTheProgramDuringALoad_WaitsForIt) {
    StoreMany();
    Library().SetLoadTrackToMapCallFun(Map::OnLoaded);
    for (int i = 0; i < 10; ++i) {
        Library().LoadData();
        Restart();
    }
    Map::calls = 0;
    Load();
    EXPECT_EQ(Map::calls, 0);
    EXPECT_EQ(Library().GetCnt(), static_cast<unsigned long>(kMany));
}

// It is given up after a while. What it touches later is nobody's any more: the sanitizers look at that.
TEST_F(LoadingThread, ThatOutlivesTheManager_ChangesNothing) {
    Store("walk");
    Load();  // a sanitizer starts a thread of its own beside the first of ours
    const auto before = RunningThreads();
    Library().SetLoadTrackToMapCallFun(Map::OnLoadedAndHold);
    Library().LoadData();
    Map::entered.Pass();
    Restart();
    Map::mayLeave.Open();
    EXPECT_TRUE(AreThreadsGone(before)) << RunningThreads() << " of " << before;
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    EXPECT_EQ(Library().GetCnt(), 0u);
}

TEST_F(LoadingThread, InitDuringALoad_EndsIt) {
    StoreMany();
    Library().LoadData();
    Library().Init();
    EXPECT_EQ(Library().GetCnt(), 0u);
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    Load();
    EXPECT_EQ(Library().GetCnt(), static_cast<unsigned long>(kMany));
}

TEST_F(LoadingThread, ManyLoads_LeaveNoThreadBehind) {
    Load();
    const auto before = RunningThreads();
    for (int i = 0; i < 50; ++i) Load();
    EXPECT_TRUE(AreThreadsGone(before)) << RunningThreads() << " of " << before;
}
