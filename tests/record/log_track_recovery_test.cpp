// Damaged point files: what is salvaged, what is kept, and that nothing hangs.
#include "tests/record/log_track_fixture.h"

using described::kZeros;
using described::RingFile;

class LogTrackRecovery : public LogTrackTest {
 protected:
    // Records of these fixes where recovery looks for them: from byte 0 on.
    std::string Records(int count) {
        std::string bytes;
        for (const TckPt& fix : NextFixes(count)) bytes += described::Record(fix);
        return bytes;
    }
    std::string File() const { return BytesOf(kPointFile); }
};

TEST_F(LogTrackRecovery, IntactHeader_ShiftsEveryRecord) {
    Open(10);
    Record(5);
    Close();
    const std::string damaged = File() + "x";
    Write(kPointFile, damaged);
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(m_track->GetPtCount(), 0u);
    EXPECT_EQ(File(), RingFile(0, {}));
    EXPECT_EQ(BytesOf(kBackup), damaged);
}

TEST_F(LogTrackRecovery, RecordsWithoutTheHeader_AreFoundAndWrittenAnew) {
    const std::string damaged = Records(4);
    Write(kPointFile, damaged);
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(m_track->GetPtCount(), 4u);
    EXPECT_EQ(File(), RingFile(0, {Sent(0), Sent(1), Sent(2), Sent(3)}));
    EXPECT_EQ(BytesOf(kBackup), damaged);
}

TEST_F(LogTrackRecovery, SalvagedPoints_AreSortedAndCut) {
    NextFixes(2);
    Pause(1800);
    NextFixes(1);
    Write(kPointFile, Sent(2) + Sent(1) + Sent(0));
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 1801}));
    EXPECT_EQ(SliceSizes(), (std::vector<int>{2, 1}));
}

TEST_F(LogTrackRecovery, RecordsThatFailTheirCheck_AreLeftOut) {
    NextFixes(3);
    std::string damaged = Sent(1);
    damaged[41] = static_cast<char>(damaged[41] ^ 1);
    Write(kPointFile, Sent(0) + damaged + kZeros + Sent(2));
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 2}));
}

TEST_F(LogTrackRecovery, RecordCutAtTheEnd_IsNone) {
    const std::string records = Records(3);
    for (const std::size_t missing : {std::size_t{1}, std::size_t{6}, std::size_t{47}}) {
        Write(kPointFile, records.substr(0, records.size() - missing));
        EXPECT_TRUE(Open(10));
        EXPECT_EQ(Times(), (std::vector<int>{0, 1})) << missing << " bytes missing";
    }
}

TEST_F(LogTrackRecovery, FilesShorterThanAHeader_BecomeEmptyRings) {
    for (std::size_t size = 1; size <= 3; ++size) {
        Write(kPointFile, std::string(size, '\0'));
        EXPECT_TRUE(Open(10));
        EXPECT_EQ(File(), RingFile(0, {}));
        EXPECT_TRUE(Record(1));
    }
}

TEST_F(LogTrackRecovery, HeaderThatContradictsTheFile_IsDamage) {
    NextFixes(3);
    const std::string records = Sent(0) + Sent(1) + Sent(2);
    const std::string startAboveCount = described::Field(4) + described::Field(3) + records;
    const std::string countTooLarge = described::Field(0) + described::Field(4) + records;
    const std::string countTooSmall = described::Field(0) + described::Field(2) + records;
    for (const std::string& damaged : {startAboveCount, countTooLarge, countTooSmall}) {
        std::filesystem::remove(OnDisk(kBackup));
        Write(kPointFile, damaged);
        EXPECT_TRUE(Open(10));
        EXPECT_EQ(m_track->GetPtCount(), 0u);
        EXPECT_EQ(BytesOf(kBackup), damaged);
    }
}

TEST_F(LogTrackRecovery, MoreThanTheCapacity_KeepsTheNewest) {
    Write(kPointFile, Records(25));
    EXPECT_TRUE(Open(4));
    EXPECT_EQ(Times(), (std::vector<int>{21, 22, 23, 24}));
    EXPECT_EQ(m_track->GetPtCount(), 4u);
    EXPECT_EQ(File(), RingFile(0, {Sent(21), Sent(22), Sent(23), Sent(24)}));
}

TEST_F(LogTrackRecovery, RecordingGoesOnBehindWhatWasSalvaged) {
    Write(kPointFile, Records(3));
    ASSERT_TRUE(Open(10));
    EXPECT_TRUE(Record(2));
    Open(10);
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2, 3, 4}));
}

// --- The damaged file is kept ---

TEST_F(LogTrackRecovery, OlderBackup_StaysAndTheDamagedFileIsKeptBesideIt) {
    Write(kBackup, "an older one");
    const std::string damaged = Records(2);
    Write(kPointFile, damaged);
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(BytesOf(kBackup), "an older one");
    EXPECT_EQ(BytesOf("\\Track\\TmpTk2.bk"), damaged);
    EXPECT_EQ(Times(), (std::vector<int>{0, 1}));
}

TEST_F(LogTrackRecovery, EveryDamagedFile_GetsItsOwnNumber) {
    for (int time = 0; time < 5; ++time) {
        Write(kPointFile, std::string(7, static_cast<char>('a' + time)));
        EXPECT_TRUE(Open(10));
        Close();
    }
    EXPECT_EQ(BytesOf(kBackup), "aaaaaaa");
    EXPECT_EQ(BytesOf("\\Track\\TmpTk2.bk"), "bbbbbbb");
    EXPECT_EQ(BytesOf("\\Track\\TmpTk5.bk"), "eeeeeee");
}

// A power cut between moving the damaged file aside and putting what was salvaged in its place.
TEST_F(LogTrackRecovery, SalvagedFileWithoutItsPlace_TakesItAtTheNextStart) {
    NextFixes(2);
    Write("\\App\\Log.dat.new", described::RingFile(0, {Sent(0), Sent(1)}));
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1}));
    EXPECT_FALSE(Exists("\\App\\Log.dat.new"));
    EXPECT_EQ(Ring(), (RingState{0, 2}));
}

TEST_F(LogTrackRecovery, SalvagedFileBesideAWholeRing_IsRemoved) {
    NextFixes(3);
    Write("\\App\\Log.dat.new", described::RingFile(0, {Sent(0), Sent(1)}));
    Write(kPointFile, described::RingFile(0, {Sent(2)}));
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{2}));
    EXPECT_FALSE(Exists("\\App\\Log.dat.new"));
}

TEST_F(LogTrackRecovery, MissingTrackFolder_StopsNothingAndTheDamagedFileIsKeptBesideThePointFile) {
    SetTrackFolder("\\Missing\\Track");
    const std::string damaged = Records(2);
    Write(kPointFile, damaged);
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1}));
    EXPECT_EQ(BytesOf("\\App\\TmpTk.bk"), damaged);
}

TEST_F(LogTrackRecovery, TrackFolderThatWasNeverSet_KeepsItInTheRootOrBesideThePointFile) {
    SetTrackFolder("\\");
    const std::string damaged = Records(2);
    Write(kPointFile, damaged);
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(BytesOf(Exists("\\TmpTk.bk") ? "\\TmpTk.bk" : "\\App\\TmpTk.bk"), damaged);
}

TEST_F(LogTrackRecovery, NowhereToKeepIt_StillSalvages) {
    SetTrackFolder("\\Missing\\Track");
    Write("\\App\\TmpTk.bk", "taken");
    for (int number = 2; number <= 99; ++number)
        Write("\\App\\TmpTk" + std::to_string(number) + ".bk", "taken");
    Write(kPointFile, Records(2));
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1}));
    EXPECT_EQ(BytesOf("\\App\\TmpTk99.bk"), "taken");
}

TEST_F(LogTrackRecovery, Recovery_LeaksNoHandle) {
    Open(10);
    const auto handles = OpenHandles();
    for (int time = 0; time < 3; ++time) {
        Close();
        Write(kPointFile, "damaged");
        Open(10);
    }
    EXPECT_EQ(OpenHandles(), handles);
}

// --- The walk over the file ---

namespace {

// Lets a test walk over a file of its own.
struct Walker : CTrackEx {
    using CTrackEx::CTrackEx;
    using CTrackEx::RecoverPtList;
};

}  // namespace

class RecoveryWalk : public LogTrackRecovery {
 protected:
    std::vector<int> Found(const std::string& bytes, int step, int size) {
        WriteFile(m_root.Path() / "walked", bytes);
        std::FILE* file = std::fopen((m_root.Path() / "walked").string().c_str(), "rb");
        Walker track(1000);
        track.RecoverPtList(file, step, size);
        std::fclose(file);
        return TimesOf(track.GetPtList());
    }
};

TEST_F(RecoveryWalk, InvalidRecord_MovesTheCounterByTheStepButTheFileByARecord) {
    NextFixes(3);
    const std::string bytes = kZeros + kZeros + Sent(0) + Sent(1) + Sent(2);
    EXPECT_EQ(Found(bytes, 1, 2), (std::vector<int>{}));
    EXPECT_EQ(Found(bytes, 1, 3), (std::vector<int>{0}));
    EXPECT_EQ(Found(bytes, 1, 2 + 48), (std::vector<int>{0}));
    EXPECT_EQ(Found(bytes, 1, 2 + 48 + 1), (std::vector<int>{0, 1}));
    EXPECT_EQ(Found(bytes, 1, 240), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(Found(bytes, 48, 96), (std::vector<int>{}));
}

TEST_F(RecoveryWalk, SizeFarBeyondTheFile_EndsWithTheFile) {
    NextFixes(1);
    EXPECT_EQ(Found(Sent(0), 1, 2'147'483'647), (std::vector<int>{0}));
    EXPECT_EQ(Found(kZeros, 0, 1), (std::vector<int>{})) << "nor does a step of 0 go on for ever";
}

TEST_F(RecoveryWalk, NoStreamOrNoSize_FindsNothing) {
    Walker track(10);
    track.RecoverPtList(nullptr, 1, 100);
    EXPECT_TRUE(track.GetPtList().empty());
    NextFixes(1);
    EXPECT_EQ(Found(Sent(0), 1, 0), (std::vector<int>{}));
}

class HugePointFile : FilesInMemory, public LogTrackRecovery {};

// A size that does not fit a signed number of 32 bits. What was in front is found, and what is missing is no
// endless loop.
TEST_F(HugePointFile, TwoGibibytes_AreReadToTheirEnd) {
    Write(kPointFile, Records(2));
    std::error_code full;
    std::filesystem::resize_file(OnDisk(kPointFile), (std::uintmax_t{1} << 31) + 100, full);
    if (full) GTEST_SKIP() << "no room for a sparse file of two gibibytes: " << full.message();
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1}));
    EXPECT_EQ(File(), RingFile(0, {Sent(0), Sent(1)}));
}
