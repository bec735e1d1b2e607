// A storage that fails for a moment: whatever could not be done is done as soon as it can, and nothing is lost.
#include "tests/record/log_track_fixture.h"
#include "tests/record/posix/storage_calls.h"

class LogTrackFailingCalls : public LogTrackTest {
 protected:
    ~LogTrackFailingCalls() override { Mend(); }

    static void Mend() {
        storage_calls::failingCommit.clear();
        storage_calls::allCommitsFail = storage_calls::cutsFail = false;
        storage_calls::movesToFail = 0;
    }
    // An append of four points that neither reaches the storage nor can be taken back.
    void LeaveAnAppendHalfDone() {
        ASSERT_TRUE(Open(100));
        Record(8);
        storage_calls::failingCommit = "Log.dat";
        storage_calls::cutsFail = true;
        EXPECT_TRUE(Record(4));
    }
    // A file without its header, whose records are found.
    void LeaveADamagedRecording() {
        std::string records;
        for (const TckPt& fix : NextFixes(5)) records += described::Record(fix);
        Write(kPointFile, records);
    }
    std::vector<int> TimesAfterARestart() {
        Open(100);
        return Times();
    }
    static std::vector<int> UpTo(int count) {
        std::vector<int> times;
        for (int i = 0; i < count; ++i) times.push_back(i);
        return times;
    }
};

TEST_F(LogTrackFailingCalls, AppendNotTakenBack_IsThereAfterClosing) {
    LeaveAnAppendHalfDone();
    Mend();
    Close();
    EXPECT_EQ(TimesAfterARestart(), UpTo(12));
}

TEST_F(LogTrackFailingCalls, AppendNotTakenBackAndStillFailingAtTheEnd_IsFinishedAtTheNextStart) {
    LeaveAnAppendHalfDone();
    m_track->ClearAllSliceTrace();  // its memory is lost
    Close();
    Mend();
    EXPECT_EQ(TimesAfterARestart(), UpTo(12));
}

TEST_F(LogTrackFailingCalls, AppendNotTakenBack_GoesToTheStorageWithTheNextOne) {
    LeaveAnAppendHalfDone();
    Mend();
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(Ring(), (RingState{0, 14}));
    EXPECT_EQ(TimesAfterARestart(), UpTo(14));
}

TEST_F(LogTrackFailingCalls, AppendNotTakenBack_KeepsTheNextOnesInMemory) {
    LeaveAnAppendHalfDone();
    const std::string file = BytesOf(kPointFile), note = BytesOf("\\App\\Log.dat.redo");
    storage_calls::allCommitsFail = true;
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(Times(), UpTo(14));
    EXPECT_EQ(BytesOf(kPointFile), file);
    EXPECT_EQ(BytesOf("\\App\\Log.dat.redo"), note) << "it still mends the file";
}

TEST_F(LogTrackFailingCalls, SalvagedFileNotMoved_IsTriedAgainAndNeverDeleted) {
    LeaveADamagedRecording();
    storage_calls::movesToFail = 2;  // the damaged file's, to both folders
    ASSERT_TRUE(Open(100));
    Close();
    const std::string salvaged = BytesOf(kPointFile);
    Write("\\App\\Log.dat.new", salvaged);
    std::filesystem::remove(OnDisk(kPointFile));
    storage_calls::movesToFail = 1;
    EXPECT_FALSE(Open(100));
    EXPECT_TRUE(Open(100));
    EXPECT_EQ(Times(), UpTo(5));
}

TEST_F(LogTrackFailingCalls, BackupThatCannotBeMoved_IsTriedOnceForEachFolder) {
    LeaveADamagedRecording();
    storage_calls::moves = 0;
    storage_calls::movesToFail = 2;
    ASSERT_TRUE(Open(100));
    EXPECT_LE(storage_calls::moves, 3) << "the third: what was salvaged";
    EXPECT_EQ(Times(), UpTo(5));
}
