// From a fix to the files: what the manager does with the fixes offered to it, in each of the record modes.
#include "tests/library/library_fixture.h"
#include "tests/library/log_on_disk.h"

namespace {

std::vector<std::int32_t> s_shown;       // times of the fixes shown
std::vector<unsigned> s_countWhenShown;  // records in the point file at that moment
std::set<std::thread::id> s_showingThreads;
std::filesystem::path s_pointFile;

void OnPoint(const TckPt& fix) {
    s_shown.push_back(fix.lTime);
    s_countWhenShown.push_back(LogOnDisk(s_pointFile).count);
    s_showingThreads.insert(std::this_thread::get_id());
}

}  // namespace

class Recording : public LibraryTest {
 protected:
    Recording() {
        s_shown.clear();
        s_countWhenShown.clear();
        s_showingThreads.clear();
        s_pointFile = OnDisk("\\App\\Log.dat");
    }

    void Begin(EnumRecTrack mode = RecTrackAuto, int metres = 3, int seconds = 1) {
        Settings().SetTrackRecordMode(mode, metres, seconds);
        Load();
        Library().SetTmpTrackPtShowInMapCallFun(OnPoint);
        ASSERT_TRUE(Library().Start());
    }
    static void Ride(int first, int end) {
        for (int i = first; i < end; ++i) Library().SaveToTempTrack(RideFix(i));
    }
    LogOnDisk Log() const { return LogOnDisk(s_pointFile); }
};

TEST_F(Recording, BeforeStart_DropsFixes) {
    Load();
    Library().SetTmpTrackPtShowInMapCallFun(OnPoint);
    Ride(0, 100);
    EXPECT_TRUE(s_shown.empty());
    EXPECT_EQ(Log().count, 0u);
}

TEST_F(Recording, BeforeTheFirstLoad_DropsFixes) {
    Library().SetTmpTrackPtShowInMapCallFun(OnPoint);
    Library().Start();
    Ride(0, 100);
    EXPECT_TRUE(s_shown.empty());
    Load();
    Library().Stop();
    EXPECT_EQ(Log().count, 0u);  // nor were they kept
}

TEST_F(Recording, FirstFix_OpensARunAndIsNotShown) {
    Begin();
    Ride(0, 1);
    EXPECT_TRUE(s_shown.empty());
}

TEST_F(Recording, FixesOfTheAutomaticMode_AreShownAtOnceAndWrittenIn60s) {
    Begin();
    Ride(0, 60);
    EXPECT_EQ(s_shown, RideTimes(1, 60));
    EXPECT_EQ(Log().count, 0u);
    Ride(60, 61);
    EXPECT_EQ(Log().count, 60u);
    EXPECT_EQ(Log().Times(), RideTimes(0, 60));
}

TEST_F(Recording, FixesOfTheDistanceMode_AreWrittenIn30s) {
    Begin(RecTrackByDist, 20, 1);
    Ride(0, 60);  // 10 m each: every other one begins a run of 20 m
    EXPECT_EQ(s_shown.size(), 29u);
    EXPECT_EQ(Log().count, 0u);
    Ride(60, 61);
    std::vector<std::int32_t> expected;
    for (int i = 0; i < 60; i += 2) expected.push_back(kRideStart + i);
    EXPECT_EQ(Log().Times(), expected);
}

TEST_F(Recording, FixesOfTheTimeMode_AreWrittenAMinuteAtATime) {
    Begin(RecTrackByTime, 3, 5);
    Ride(0, 55);
    EXPECT_EQ(Log().count, 0u);
    Ride(55, 56);  // the twelfth point
    std::vector<std::int32_t> expected;
    for (int i = 0; i < 60; i += 5) expected.push_back(kRideStart + i);
    EXPECT_EQ(Log().Times(), expected);
    EXPECT_EQ(s_shown, RideTimes(0, 56));  // shown although most of them are not recorded
}

TEST_F(Recording, RecordedPoints_AreTheFixesByteForByte) {
    Begin();
    Ride(0, 61);
    const LogOnDisk log = Log();
    ASSERT_EQ(log.slots.size(), 60u);
    for (int i = 0; i < 60; ++i) {
        const TckPt sent = RideFix(i);
        EXPECT_EQ(std::memcmp(&log.slots[static_cast<std::size_t>(i)], &sent, 40), 0) << "point " << i;
    }
}

TEST_F(Recording, PointCallback_RunsOnTheCallersThreadAfterThePointsAreWritten) {
    Begin();
    std::thread receiver([] { Ride(0, 61); });
    const std::thread::id receiverId = receiver.get_id();
    receiver.join();
    EXPECT_EQ(s_showingThreads, std::set<std::thread::id>{receiverId});
    EXPECT_EQ(s_countWhenShown.front(), 0u);
    EXPECT_EQ(s_countWhenShown.back(), 60u);
}

TEST_F(Recording, WithoutAPointCallback_RecordsAllTheSame) {
    Begin();
    Library().SetTmpTrackPtShowInMapCallFun(nullptr);
    Ride(0, 61);
    EXPECT_EQ(Log().count, 60u);
}

TEST_F(Recording, FixThatIsNotRecorded_IsNotShown) {
    Begin();
    Ride(0, 2);
    s_shown.clear();
    Library().SaveToTempTrack(RideFix(0));  // older than the one before
    TckPt timeless = RideFix(9);
    timeless.lTime = 0;
    Library().SaveToTempTrack(timeless);
    EXPECT_TRUE(s_shown.empty());
}

TEST_F(Recording, Batches_FollowOneAnother) {
    Begin();
    Ride(0, 181);
    EXPECT_EQ(Log().Times(), RideTimes(0, 180));
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 180u);
    EXPECT_EQ(Library().GetLogTrack()->GetSliceNum(), 1);
}

TEST_F(Recording, FlushOut_WritesWhatIsPendingOnce) {
    Begin();
    Ride(0, 8);
    Library().FlushOut();
    EXPECT_EQ(Log().Times(), RideTimes(0, 7));
    Library().FlushOut();
    EXPECT_EQ(Log().Times(), RideTimes(0, 7));
    Ride(8, 10);
    Library().FlushOut();
    EXPECT_EQ(Log().Times(), RideTimes(0, 9));
    EXPECT_TRUE(Library().isStart());
}

TEST_F(Recording, FlushOutWithoutARecording_DoesNothing) {
    Load();
    Library().FlushOut();
    EXPECT_EQ(Log().count, 0u);
}

TEST_F(Recording, Stop_WritesWhatIsPendingAndForgetsTheRun) {
    Begin();
    Ride(0, 8);
    EXPECT_TRUE(Library().Stop());
    EXPECT_EQ(Log().Times(), RideTimes(0, 7));
    ASSERT_TRUE(Library().Start());
    Ride(8, 10);
    Library().Stop();
    auto expected = RideTimes(0, 7);
    expected.push_back(kRideStart + 8);
    EXPECT_EQ(Log().Times(), expected);
}

TEST_F(Recording, EndOfTheProgram_WritesWhatIsPending) {
    Begin();
    Ride(0, 8);
    Restart();
    EXPECT_EQ(Log().Times(), RideTimes(0, 7));
}

TEST_F(Recording, RecordMode_CountsFromTheNextStart) {
    Begin(RecTrackAuto);
    Settings().SetTrackRecordMode(RecTrackByTime, 3, 1);
    Ride(0, 2);
    EXPECT_EQ(s_shown.size(), 1u);  // by time the first would have been shown
    Library().Stop();
    Library().Start();
    s_shown.clear();
    Ride(2, 3);
    EXPECT_EQ(s_shown.size(), 1u);
}

TEST_F(Recording, FullRecordingThatMustNotOverwrite_TakesNoMore) {
    Settings().SetTrackOverWriteMode(false);
    Begin();
    Points past;
    for (int i = -9999; i < 0; ++i) past.push_back(RideFix(i));
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(past));
    Ride(0, 61);
    EXPECT_EQ(Log().count, 10000u);
    EXPECT_EQ(Log().slots.back().lTime, kRideStart);
    Ride(61, 130);
    EXPECT_EQ(Log().count, 10000u);
    EXPECT_EQ(Log().slots.back().lTime, kRideStart);
}

TEST_F(Recording, FullRecordingThatMayOverwrite_LosesItsOldest) {
    Begin();
    Points past;
    for (int i = -9999; i < 0; ++i) past.push_back(RideFix(i));
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(past));
    Ride(0, 61);
    EXPECT_EQ(Log().start, 59u);
    EXPECT_EQ(Log().slots[9999].lTime, kRideStart);
    EXPECT_EQ(Log().slots[0].lTime, kRideStart + 1);
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 10000u);
}

// --- The newest points ---

class NewestPoints : public Recording {
 protected:
    // Fixes one second apart, of which the last is `age` seconds old.
    static std::int32_t RideUntil(int age, int count) {
        const auto last = static_cast<std::int32_t>(Now()) - age;
        for (int i = count; i-- > 0;) {
            TckPt fix = RideFix(count - i);
            fix.lTime = last - i;
            Library().SaveToTempTrack(fix);
        }
        return last;
    }
    static std::vector<std::int32_t> Newest(int seconds) {
        Points points(5);  // what is there is replaced
        Library().GetTopTmpPtLst(points, seconds);
        std::vector<std::int32_t> times;
        for (const TckPt& point : points) times.push_back(point.lTime);
        return times;
    }
};

TEST_F(NewestPoints, WrittenAndPending_AreGivenInTimeOrder) {
    Begin();
    const std::int32_t last = RideUntil(0, 100);  // 60 written, 39 pending, 1 in the run
    const auto newest = Newest(100000);
    ASSERT_EQ(newest.size(), 99u);
    for (int i = 0; i < 99; ++i) EXPECT_EQ(newest[static_cast<std::size_t>(i)], last - 99 + i);
}

TEST_F(NewestPoints, OldOnes_AreLeftOut) {
    Begin();
    const std::int32_t last = RideUntil(3000, 100);
    EXPECT_TRUE(Newest(1000).empty());
    EXPECT_EQ(Newest(100000).back(), last - 1);
}

TEST_F(NewestPoints, WithoutARecording_AreThoseOfTheFile) {
    Begin();
    RideUntil(0, 100);
    Library().Stop();
    EXPECT_EQ(Newest(100000).size(), 99u);
}

TEST_F(NewestPoints, OfNothing_AreNone) {
    Load();
    EXPECT_TRUE(Newest(100000).empty());
}
