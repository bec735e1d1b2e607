// What the recording has brought to storage when an operation returns. How a stream does it:
// tests/platform/file_test.cpp.
#include "tests/record/log_track_fixture.h"
#include "tests/record/posix/storage_calls.h"

class LogTrackCommits : public LogTrackTest {
 protected:
    using Files = std::vector<std::string>;

    template <typename Action>
    static Files CommitsOf(Action action) {
        storage_calls::commits.clear();
        action();
        return storage_calls::commits;
    }
};

TEST_F(LogTrackCommits, EachAppend_CommitsItsNoteAndThenTheRing) {
    ASSERT_TRUE(Open(10));
    for (const int points : {1, 3, 6, 4, 9})
        EXPECT_EQ(CommitsOf([&] { EXPECT_TRUE(Record(points)); }), (Files{"Log.dat.redo", "Log.dat"}))
            << points;
}

// The oldest records give way when those at the end are on the storage.
TEST_F(LogTrackCommits, AppendThatFillsTheRingAndTurns_CommitsBetween) {
    ASSERT_TRUE(Open(10));
    Record(8);
    EXPECT_EQ(CommitsOf([&] { EXPECT_TRUE(Record(4)); }), (Files{"Log.dat.redo", "Log.dat", "Log.dat"}));
}

TEST_F(LogTrackCommits, RefusedBatch_CommitsNothing) {
    ASSERT_TRUE(Open(10, false));
    EXPECT_EQ(CommitsOf([&] { EXPECT_FALSE(Record(10)); }), Files{});
    Record(9);
    Record(1);
    EXPECT_EQ(CommitsOf([&] { EXPECT_FALSE(Record(1)); }), Files{});
}

TEST_F(LogTrackCommits, Properties_AreCommitted) {
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(CommitsOf([&] { m_track->SavePropertyData(); }), Files{"LogHd.dat"});
}

TEST_F(LogTrackCommits, SlicesSaved_VoidTheNoteAndAreCommittedWithTheHead) {
    ASSERT_TRUE(Open(10));
    Record(3);
    const Files commits = CommitsOf([&] { EXPECT_TRUE(m_track->SaveSliceData()); });
    ASSERT_EQ(commits.size(), 3u);
    EXPECT_EQ(commits[0], "LogHd.dat");
    EXPECT_EQ(commits[1], "Log.dat.redo");
    EXPECT_EQ(commits[2].rfind(".qtrace-", 0), 0u) << "the new file, before it takes the old one's place";
}

// After a kill the note of a complete append is still there, and is written once more.
TEST_F(LogTrackCommits, CompleteAppend_StaysThoughTheStorageFailsAtTheNextStart) {
    ASSERT_TRUE(Open(10));
    Record(3);
    Record(2);
    const std::string note = BytesOf("\\App\\Log.dat.redo"), ring = BytesOf(kPointFile);
    Close();
    Write("\\App\\Log.dat.redo", note);
    storage_calls::failingCommit = "Log.dat";
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2, 3, 4}));
    Close();
    storage_calls::failingCommit.clear();
    EXPECT_EQ(BytesOf(kPointFile), ring);
}
