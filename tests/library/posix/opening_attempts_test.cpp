// The recording's files may fail to open for a moment: the manager tries three times.
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "tests/library/library_fixture.h"
#include "tests/library/log_on_disk.h"
#include "tests/support/posix/full_device.h"

namespace {
int s_movesToFail = 0;  // of a salvaged recording to its place
}

// The program's own definition comes before the C library's.
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
    if (std::string_view(from).ends_with(".new") && s_movesToFail > 0) {
        --s_movesToFail;
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

class OpeningAttempts : public LibraryTest {
 protected:
    // A start that finds a salvaged recording of which the move to its place fails so many times.
    void StartWithFailures(int failures) {
        Load();
        std::filesystem::rename(OnDisk("\\App\\Log.dat"), OnDisk("\\App\\Log.dat.new"));
        s_movesToFail = failures;
        Load();
        s_movesToFail = 0;
    }
};

TEST_F(OpeningAttempts, SecondFailure_IsFollowedByAThirdAttempt) {
    StartWithFailures(2);
    EXPECT_TRUE(std::filesystem::exists(OnDisk("\\App\\Log.dat")));
    EXPECT_FALSE(std::filesystem::exists(OnDisk("\\App\\Log.dat.new")));
}

TEST_F(OpeningAttempts, ThirdFailure_IsTheLast) {
    StartWithFailures(3);
    EXPECT_FALSE(std::filesystem::exists(OnDisk("\\App\\Log.dat")));
    EXPECT_TRUE(std::filesystem::exists(OnDisk("\\App\\Log.dat.new"))) << "nothing is lost";
}

TEST_F(OpeningAttempts, PointsWithoutRoom_GoToTheStorageFirst) {
    Load();
    Library().Start();
    const auto ride = [](int first, int end) {
        for (int i = first; i < end; ++i) Library().SaveToTempTrack(RideFix(i));
    };
    ride(0, 120);
    const auto before = LogOnDisk(OnDisk("\\App\\Log.dat"));
    ASSERT_GT(before.count, 0u);
    {
        const FullDevice full(std::filesystem::file_size(OnDisk("\\App\\Log.dat")));
        ride(120, 300);
        ASSERT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).count, before.count);
    }
    const unsigned long inMemory = Library().GetLogTrack()->GetPtCount();
    ASSERT_GT(inMemory, before.count);
    Load();
    EXPECT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).count, inMemory);
}
