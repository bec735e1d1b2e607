// The track that a recording becomes: its name, a new recording, `qtrace save`, and one recorder at a time.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class RecordSave : public Recorder {
 protected:
    // Corners everywhere, so that thinning keeps all points and the saved file is larger than the recording.
    static std::string Zigzag(int count) {
        std::string log;
        for (int i = 0; i < count; ++i)
            log += NmeaLine("GPRMC,0854" + Digits(10 + i, 2) + ",A,5222." + Digits(1000 + 137 * i, 4) +
                            ",N,00454." + (i % 2 == 0 ? "1000" : "9000") + ",E,9.0,251.3,020414,,,A");
        return log;
    }
    std::vector<std::string> SavedNames() const {
        std::vector<std::string> names;
        for (const fs::path& file : SavedTracks()) names.push_back(file.stem().string());
        return names;
    }
};

using Names = std::vector<std::string>;

TEST_F(RecordSave, SaveAs_NamesTheTrack) {
    const ProcessResult run = Record({Log(Drive(50)), "--save-as", "Über den Berg"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(SavedNames(), Names{"Über den Berg"});
    EXPECT_EQ(SummaryLine(run.out, "  name"), "Über den Berg");
}

TEST_F(RecordSave, NameThatExists_GetsANumberAndOverwritesNothing) {
    const std::string drive = Drive(90);
    ASSERT_EQ(Record({Log(drive.substr(0, drive.size() / 2)), "--save-as", "trip"}).exitCode, 0);
    const std::string first = ReadFile(SavedTracks()[0]);
    ASSERT_EQ(Record({Log(drive.substr(drive.size() / 2)), "--save-as", "TRIP"}).exitCode, 0);
    EXPECT_EQ(SavedNames(), (Names{"TRIP_2", "trip"}));
    EXPECT_EQ(ReadFile(SavedTracks()[1]), first);
}

TEST_F(RecordSave, UnreadableFileOfThatName_IsNotOverwritten) {
    fs::create_directories(m_device / "UserData" / "Track");
    WriteFile(m_device / "UserData" / "Track" / "trip.gpx", "no document");
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "trip"}).exitCode, 0);
    EXPECT_EQ(SavedNames(), (Names{"trip", "trip_2"}));
    EXPECT_EQ(ReadFile(SavedTracks()[0]), "no document");
}

TEST_F(RecordSave, NameThatIsChanged_IsTold) {
    const ProcessResult run = Record({Log(Drive(50)), "--save-as", "a/b with more than thirty-two bytes"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.err.find("a_b with more than thirty-two by"), std::string::npos) << run.err;
    EXPECT_EQ(SavedNames(), Names{"a_b with more than thirty-two by"});
}

TEST_F(RecordSave, NameOfNothing_IsWrongUsage) {
    EXPECT_EQ(Record({Log(Drive(50)), "--save-as", "   "}).exitCode, 2);
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordSave, New_SavesTheOldRecordingAndBeginsAnother) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const ProcessResult run = Record({Log(Drive(30)), "--new", "--save-as", "second"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find("49 points, is saved as"), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.size(), 29u);
    ASSERT_EQ(SavedTracks().size(), 2u);
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).back().time, "2014-04-03T00:00:48Z");
    EXPECT_EQ(GpxPointsOf(SavedTracks()[1]).back().time, "2014-04-03T00:00:28Z");
}

TEST_F(RecordSave, NewWithoutSave_DropsTheOldRecording) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    ASSERT_EQ(Record({Log(Drive(30)), "--new", "--no-save"}).exitCode, 0);
    EXPECT_EQ(Ring().points.size(), 29u);
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordSave, NewThatCannotSave_LeavesTheOldRecording) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const std::string before = ReadFile(PointFile());
    ProcessOptions options;
    options.fileSizeLimit = static_cast<long>(before.size()) / 2;
    const ProcessResult run = Record({Log(Drive(30)), "--new"}, options);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("no new recording is begun"), std::string::npos) << run.err;
    EXPECT_EQ(ReadFile(PointFile()), before);
}

TEST_F(RecordSave, NewAfterASave_SavesNothingTwice) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    const ProcessResult run = Record({Log(Drive(30)), "--new", "--save-as", "second"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find("49 points, is saved already"), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.size(), 29u);
    EXPECT_EQ(SavedNames(), (Names{"first", "second"}));
}

// A log can be read once more; what a receiver tells cannot, whatever the storage does.
TEST_F(RecordSave, NewThatCannotSaveFromAReceiver_RecordsOn) {
    ASSERT_EQ(Record({Log(Zigzag(40)), "--no-save"}).exitCode, 0);
    ProcessOptions options;
    options.fileSizeLimit = 3000;  // 62 points, and less than the track needs
    Process recorder(Command({"-", "--new"}), options);
    recorder.Write(Drive(20));
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("the one that is there is continued: "), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.size(), 39u + 19u);
}

// Not even the recording's four first bytes can be written.
TEST_F(RecordSave, SavedRecordingThatCannotBeCleared_StaysForAReceiver) {
    ASSERT_EQ(Record({Log(Drive(50))}).exitCode, 0);
    const std::string before = ReadFile(PointFile());
    ProcessOptions options;
    options.fileSizeLimit = 2;
    options.onTerminal = true;  // which takes the messages all the same
    Process recorder(Command({"-"}), options);
    recorder.Write(Drive(20));
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.signal, 0);
    EXPECT_NE(run.err.find("Log.dat cannot be cleared: "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("the one that is there is continued: "), std::string::npos) << run.err;
    EXPECT_EQ(ReadFile(PointFile()), before);
}

TEST_F(RecordSave, SavedRecordingInAFolderThatIsReadOnly_IsContinuedForAReceiver) {
    ASSERT_EQ(Record({Log(Drive(50))}).exitCode, 0);
    fs::permissions(m_folder.Path(), fs::perms(0777));
    for (const auto& entry : fs::recursive_directory_iterator(m_folder.Path()))
        fs::permissions(entry, fs::perms(0777));
    fs::permissions(m_device / "App", fs::perms(0555));
    ProcessOptions options;
    options.asNobody = true;
    Process recorder(Command({"-"}), options);
    recorder.Write(Drive(90).substr(Drive(50).size()));
    const ProcessResult run = recorder.Wait();
    fs::permissions(m_device / "App", fs::perms(0777));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.err.find("Log.dat.saved cannot be removed: Permission denied"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("the next run continues this recording: "), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.size(), 49u + 39u);
    EXPECT_EQ(SavedTracks().size(), 2u);
}

TEST_F(RecordSave, RunAfterASave_BeginsAnotherTrack) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    const ProcessResult run = Record({Log(Drive(30)), "--save-as", "second"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find("49 points, is saved already"), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.size(), 29u);
    EXPECT_EQ(GpxPointsOf(SavedTracks()[1]).back().time, "2014-04-03T00:00:28Z");
}

TEST_F(RecordSave, RunAfterTheSaveCommand_BeginsAnotherTrack) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    ASSERT_EQ(Save({}).exitCode, 0);
    ASSERT_EQ(Record({Log(Drive(30)), "--no-save"}).exitCode, 0);
    EXPECT_EQ(Ring().points.size(), 29u);
}

TEST_F(RecordSave, RunWithoutAPoint_LeavesASavedRecordingSaved) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    EXPECT_EQ(Record({Log(""), "--continue"}).exitCode, 1);
    ASSERT_EQ(Record({Log(Drive(30)), "--new", "--save-as", "second"}).exitCode, 0);
    EXPECT_EQ(SavedNames(), (Names{"first", "second"}));
}

TEST_F(RecordSave, SaveThatFailed_IsMadeUpByTheNextRun) {
    ProcessOptions options;
    options.fileSizeLimit = 3000;
    ASSERT_EQ(Record({Log(Zigzag(40))}, options).exitCode, 1);
    ASSERT_TRUE(SavedTracks().empty());
    const ProcessResult run = Record({Log(Drive(30))});
    EXPECT_EQ(run.err, "continuing a recording of 39 points\n");
    EXPECT_EQ(Ring().points.size(), 39u + 29u);
}

// Points that were added behind the save, and by a run that never came to its end.
TEST_F(RecordSave, PointsBehindASave_AreSavedToo) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    ASSERT_EQ(Record({Log(Drive(90).substr(Drive(50).size())), "--continue", "--no-save"}).exitCode, 0);
    ASSERT_EQ(Record({Log(Drive(30)), "--new", "--save-as", "third"}).exitCode, 0);
    ASSERT_EQ(SavedTracks().size(), 3u);
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).front().time, "2014-04-03T00:00:00Z");
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).back().time, "2014-04-03T00:01:28Z");
}

// What was saved of one recording says nothing of another, though every byte of them is the same.
TEST_F(RecordSave, SameDriveOnceMore_IsNotTakenForSaved) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const ProcessResult run = Record({Log(Drive(30)), "--no-save"});
    EXPECT_EQ(run.err, "continuing a recording of 49 points\n");
}

// The only copy of the points is then the recording.
TEST_F(RecordSave, SavedTrackThatIsGone_IsSavedOnceMoreBeforeTheRecordingGivesWay) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    fs::remove(SavedTracks()[0]);
    const ProcessResult run = Record({Log(Drive(30)), "--new", "--save-as", "second"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedTracks().size(), 2u);
}

TEST_F(RecordSave, SavedTrackThatIsCutShort_DoesNotCount) {
    ASSERT_EQ(Record({Log(Drive(50)), "--save-as", "first"}).exitCode, 0);
    fs::resize_file(SavedTracks()[0], 900);
    const ProcessResult run = Record({Log(Drive(30)), "--no-save"});
    EXPECT_EQ(run.err, "continuing a recording of 49 points\n");
}

TEST_F(RecordSave, NewWithoutSaving_SaysWhatGivesWay) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const ProcessResult run = Record({Log(Drive(30)), "--new", "--no-save"});
    EXPECT_NE(run.err.find("49 points, is in no track and gives way"), std::string::npos) << run.err;
}

TEST_F(RecordSave, InputWithoutAFix_TellsOfPointsThatAreInNoTrack) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const ProcessResult run = Record({Log("")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("49 points of before are in no track yet: qtrace save"), std::string::npos)
        << run.err;
}

TEST_F(RecordSave, NewAndContinue_ExcludeEachOther) {
    EXPECT_EQ(Record({Log(Drive(50)), "--new", "--continue"}).exitCode, 2);
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordSave, SaveCommand_SavesWhatIsThere) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const ProcessResult run = Save({"--as", "later"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedNames(), Names{"later"});
    EXPECT_EQ(SummaryLine(run.out, "Saved"), SavedTracks()[0].string());
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).back().time, "2014-04-03T00:00:48Z");
    EXPECT_EQ(Ring().points.size(), 49u);
}

TEST_F(RecordSave, SaveCommandClearing_LeavesAnEmptyRecording) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    EXPECT_EQ(Save({"--clear"}).exitCode, 0);
    EXPECT_EQ(SavedTracks().size(), 1u);
    EXPECT_EQ(ReadFile(PointFile()), std::string(4, '\0'));
    EXPECT_EQ(Save({}).exitCode, 1);  // there is nothing left to save
    EXPECT_EQ(SavedTracks().size(), 1u);
}

TEST_F(RecordSave, SaveCommandThatFails_ClearsNothing) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const std::string before = ReadFile(PointFile());
    ProcessOptions options;
    options.fileSizeLimit = 500;
    const ProcessResult run = Save({"--clear"}, options);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("the recording itself is kept"), std::string::npos) << run.err;
    EXPECT_EQ(ReadFile(PointFile()), before);
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordSave, SaveCommandWithoutRecording_MakesNoFolder) {
    const ProcessResult run = Save({});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("there is no recording in"), std::string::npos) << run.err;
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordSave, SaveCommandWronglyUsed_IsCode2) {
    EXPECT_EQ(Save({"--as"}).exitCode, 2);
    EXPECT_EQ(Save({"somewhere"}).exitCode, 2);
}

TEST_F(RecordSave, SaveCommandToAFullOutput_IsAFailure) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const std::string save = std::string(QTRACE_PROGRAM) + " save --device '" + m_device.string() + "'";
    EXPECT_EQ(RunProcess({"sh", "-c", save + " >/dev/full"}).exitCode, 1);
    EXPECT_EQ(SavedTracks().size(), 1u);
}

TEST_F(RecordSave, BrokenPipe_StillSaves) {
    const std::string record =
        std::string(QTRACE_PROGRAM) + " record '" + Log(Drive(50)) + "' --device '" + m_device.string() + "'";
    RunProcess({"sh", "-c", record + " | true"});
    EXPECT_TRUE(Eventually([&] { return Ring().points.size() == 49; }));
    EXPECT_TRUE(Eventually([&] { return SavedTracks().size() == 1; }));
}

class OneRecorder : public Recorder {
 protected:
    void SetUp() override {
        m_recorder.emplace(Command({"-", "--write-after", "3600"}));
        ASSERT_TRUE(m_recorder->Write(Drive(62)));
        ASSERT_TRUE(Eventually([&] { return Ring().points.size() == 60; }));
    }
    std::string Holder() const { return "process " + std::to_string(m_recorder->Id()) + " is recording"; }

    std::optional<Process> m_recorder;
};

TEST_F(OneRecorder, Second_IsRefusedWithTheFirstOnesNumber) {
    const ProcessResult second = Record({Log(Drive(30))});
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_NE(second.err.find(Holder()), std::string::npos) << second.err;
    EXPECT_EQ(Ring().points.size(), 60u);
}

TEST_F(OneRecorder, Save_IsRefusedMeanwhile) {
    const ProcessResult save = Save({});
    EXPECT_EQ(save.exitCode, 1);
    EXPECT_NE(save.err.find(Holder()), std::string::npos) << save.err;
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(OneRecorder, Killed_MakesRoomForTheNext) {
    m_recorder->Send(SIGKILL);
    m_recorder->Wait();
    EXPECT_EQ(Record({Log(Drive(30)), "--no-save"}).exitCode, 0);
}

TEST_F(Recorder, LockWithoutANumber_IsHeldByAnotherProcess) {
    fs::create_directories(m_device / "App");
    for (const std::string note : {"", "\n", "x", "12 monkeys\n", "-1\n"}) {
        const fs::path file = m_device / "App" / "recorder.lock";
        WriteFile(file, note);
        const int lock = open(file.c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_EQ(flock(lock, LOCK_EX | LOCK_NB), 0);
        const ProcessResult run = Record({Log(Drive(30))});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err,
                  "qtrace record: another process is recording in " + m_device.string() + " already\n");
        close(lock);
    }
}

TEST_F(Recorder, LockThatCannotBeMade_IsNamedWithTheReason) {
    fs::create_directories(m_device / "App" / "recorder.lock");
    const ProcessResult run = Record({Log(Drive(30))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("recorder.lock cannot be opened: "), std::string::npos) << run.err;
}

}  // namespace
}  // namespace host
