// Loading opens the recording again, as often as it is asked for: nothing recorded is lost, no file stays open.
#include <sys/inotify.h>
#include <unistd.h>

#include "tests/library/library_fixture.h"
#include "tests/library/log_on_disk.h"

class Reopening : public LibraryTest {
 protected:
    static void Ride(int first, int end) {
        for (int i = first; i < end; ++i) Library().SaveToTempTrack(RideFix(i));
    }
    LogOnDisk Log() const { return LogOnDisk(OnDisk("\\App\\Log.dat")); }

    // Points, the note of the append in hand, and header.
    const std::vector<std::string> kRecordingFiles{"Log.dat", "Log.dat.redo", "LogHd.dat"};

    // The files of the device that this process has open.
    std::vector<std::string> OpenFiles() const {
        std::vector<std::string> names;
        const auto root = std::filesystem::canonical(m_root.Path());
        for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            const auto file = std::filesystem::read_symlink(descriptor.path(), gone);
            if (file.string().starts_with(root.string())) names.push_back(file.filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    // How often a file is opened during an action. Watched for closing too: equal notices would be taken for
    // one.
    template <typename Action>
    int OpeningsOf(const std::string& devicePath, Action action) const {
        const int watch = inotify_init1(IN_NONBLOCK);
        EXPECT_GE(inotify_add_watch(watch, OnDisk(devicePath).c_str(), IN_OPEN | IN_CLOSE), 0);
        action();
        alignas(inotify_event) char notices[4096];
        const ssize_t size = read(watch, notices, sizeof notices);
        close(watch);
        int openings = 0;
        for (ssize_t at = 0; at < size; at += static_cast<ssize_t>(sizeof(inotify_event)))
            if ((reinterpret_cast<const inotify_event*>(notices + at)->mask & IN_OPEN) != 0) ++openings;
        return openings;
    }
};

TEST_F(Reopening, Load_OpensTheFilesOfTheRecording) {
    EXPECT_TRUE(OpenFiles().empty());
    Load();
    EXPECT_EQ(OpenFiles(), kRecordingFiles);
    EXPECT_EQ(BytesOf("\\App\\Log.dat"), std::string(4, '\0'));
    EXPECT_EQ(BytesOf("\\App\\LogHd.dat").size(), 96u);
}

TEST_F(Reopening, EndOfTheProgram_ClosesThem) {
    Load();
    delete CTrackMan::Instance();
    EXPECT_TRUE(OpenFiles().empty());
}

TEST_F(Reopening, SecondLoad_LeavesNoFileOpenAndLosesNoPoint) {
    Load();
    Library().Start();
    Ride(0, 61);
    Load();
    Load();
    EXPECT_EQ(OpenFiles(), kRecordingFiles);
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 60u);
    EXPECT_EQ(Log().Times(), RideTimes(0, 60));
}

TEST_F(Reopening, LoadWhileRecording_KeepsThePendingPoints) {
    Load();
    Library().Start();
    Ride(0, 11);
    Load();
    EXPECT_TRUE(Library().isStart());
    Ride(11, 61);
    EXPECT_EQ(Log().Times(), RideTimes(0, 60));
}

TEST_F(Reopening, LoadRightAfterLoad_LeavesNoFileOpenAndLosesNoPoint) {
    for (int i = 0; i < 50; ++i) Store("walk" + std::to_string(i));
    Load();
    Library().Start();
    Ride(0, 61);
    for (int i = 0; i < 20; ++i) Library().LoadData();
    WaitUntilLoaded();
    EXPECT_EQ(OpenFiles(), kRecordingFiles);
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 60u);
    EXPECT_EQ(Library().GetCnt(), 50u);
}

TEST_F(Reopening, RestartedProgram_HasTheRecording) {
    Load();
    Library().Start();
    Ride(0, 100);
    Restart();
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 0u);
    Load();
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 99u);
    EXPECT_EQ(Library().GetLogTrack()->GetStartTime(), kRideStart);
    EXPECT_EQ(Library().GetLogTrack()->GetEndTime(), kRideStart + 98);
}

TEST_F(Reopening, DefaultColorOfTheSettings_IsThatOfNewTracksFromThenOn) {
    Settings().SetTrackDefaultColor(0x00010203);
    EXPECT_EQ(CTrack().GetColor(), 0x00FF0000u);
    Load();
    EXPECT_EQ(CTrack().GetColor(), 0x00010203u);
}

TEST_F(Reopening, OverwriteModeOfTheSettings_CountsFromTheNextLoad) {
    Load();
    Points most;
    for (int i = 0; i < 9999; ++i) most.push_back(RideFix(i));
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(most));
    Settings().SetTrackOverWriteMode(false);
    Load();
    Points two{RideFix(9999), RideFix(10000)};
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(two));
    EXPECT_EQ(Log().start, 0u);
    EXPECT_EQ(Log().slots.back().lTime, kRideStart + 9999);
    EXPECT_FALSE(Library().GetLogTrack()->AppendEx(two));
}

TEST_F(Reopening, RecordingThatCanBeOpened_IsOpenedOnce) {
    Load();
    EXPECT_EQ(OpeningsOf("\\App\\LogHd.dat", [] { Load(); }), 1);
}

TEST_F(Reopening, RecordingThatCannotBeOpened_IsTriedThreeTimes) {
    std::filesystem::create_directories(OnDisk("\\App\\Log.dat"));
    Load();
    EXPECT_EQ(OpeningsOf("\\App\\LogHd.dat", [] { Load(); }), 3);
}

TEST_F(Reopening, RecordingThatCannotBeOpened_LeavesTheLibraryUsable) {
    std::filesystem::create_directories(OnDisk("\\App\\Log.dat"));
    Store("walk");
    Load();
    EXPECT_EQ(Library().GetCnt(), 1u);
    ASSERT_TRUE(Library().Start());
    Ride(0, 61);
    Library().FlushOut();
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 0u);
    EXPECT_TRUE(Library().Stop());
}
