// What the recording has brought to storage when an operation returns. How a stream does it:
// tests/platform/file_test.cpp.
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/record/log_track_fixture.h"

namespace {
int s_iCommits = 0;
}

// The program's own definition comes before the C library's: it counts, and then does the real thing.
extern "C" int fdatasync(int descriptor) {
    ++s_iCommits;
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

class LogTrackCommits : public LogTrackTest {
 protected:
    template <typename Action>
    static int CommitsOf(Action action) {
        const int before = s_iCommits;
        action();
        return s_iCommits - before;
    }
};

TEST_F(LogTrackCommits, EachAppend_IsCommittedOnce) {
    ASSERT_TRUE(Open(10));
    for (const int points : {1, 3, 5, 4, 9})
        EXPECT_EQ(CommitsOf([&] { EXPECT_TRUE(Record(points)); }), 1) << points << " points";
}

TEST_F(LogTrackCommits, RefusedBatch_CommitsNothing) {
    ASSERT_TRUE(Open(10, false));
    EXPECT_EQ(CommitsOf([&] { EXPECT_FALSE(Record(10)); }), 0);
    Record(9);
    Record(1);
    EXPECT_EQ(CommitsOf([&] { EXPECT_FALSE(Record(1)); }), 0);
}

TEST_F(LogTrackCommits, Properties_AreCommitted) {
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(CommitsOf([&] { m_track->SavePropertyData(); }), 1);
}

TEST_F(LogTrackCommits, SlicesSaved_AreCommittedWithTheHead) {
    ASSERT_TRUE(Open(10));
    Record(3);
    EXPECT_EQ(CommitsOf([&] { EXPECT_TRUE(m_track->SaveSliceData()); }), 2);
}
