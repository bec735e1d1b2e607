// How `qtrace record` answers to wrong usage, bad input and bad places. Good use: record_command_test.cpp.
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/nmea.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class RecordUsage : public Recorder {
 protected:
    static std::string Fix(int second) {
        return NmeaLine("GPRMC,0854" + std::to_string(10 + second) +
                        ",A,5222.3215,N,00454.5778,E,9.0,251.3,030414,,,A");
    }
};

// What the program says must not end up in the recording's files, which would take the places of closed
// streams.
TEST_F(RecordUsage, ClosedStandardStreams_AreTakenByNoFile) {
    const std::string log = Log(Fix(1) + Fix(2) + Fix(3));
    ASSERT_EQ(Record({log}).exitCode, 0);
    std::vector<std::string> command = {"sh", "-c", "exec \"$@\" <&- >&- 2>&-", "sh"};
    const std::vector<std::string> record = Command({log, "--continue"});
    command.insert(command.end(), record.begin(), record.end());
    RunProcess(command);
    EXPECT_EQ(ReadFile(m_device / "App" / "LogHd.dat").size(), 96u);
    EXPECT_EQ(Ring().points.size(), 4u);
}

TEST_F(RecordUsage, ClosedStandardInput_IsAnEmptyLog) {
    std::vector<std::string> command = {"sh", "-c", "exec \"$@\" <&-", "sh"};
    const std::vector<std::string> record = Command({"-"});
    command.insert(command.end(), record.begin(), record.end());
    EXPECT_EQ(RunProcess(command).exitCode, 1);
}

TEST_F(RecordUsage, FullStandardOutput_IsAFailure) {
    std::vector<std::string> command = {"sh", "-c", "exec \"$@\" >/dev/full", "sh"};
    const std::vector<std::string> record = Command({Log(Fix(1) + Fix(2) + Fix(3))});
    command.insert(command.end(), record.begin(), record.end());
    EXPECT_EQ(RunProcess(command).exitCode, 1);
}

TEST_F(RecordUsage, WrongUsage_IsCode2AndTouchesNothing) {
    const std::string log = Log(Fix(1) + Fix(2) + Fix(3));
    const std::vector<std::vector<std::string>> wrong = {
        {},  // no log
        {log, "--mode", "2"},
        {log, "--mode", "sometimes"},  // no such mode
        {log, "--time", "0"},          // no interval
        {log, "--time", "-5"},
        {log, "--time", "soon"},
        {log, "--distance", "0"},
        {log, "--distance", "3 m"},
        {log, "--code-page", "12345"},  // no such code page
        {log, "--colour", "red"},       // no such option
        {log, log},                     // one log at a time
        {"--nmea"},
    };
    for (const auto& arguments : wrong) {
        const ProcessResult run = Record(arguments);
        EXPECT_EQ(run.exitCode, 2) << ::testing::PrintToString(arguments);
        EXPECT_NE(run.err, "") << ::testing::PrintToString(arguments);
        EXPECT_EQ(run.out, "") << ::testing::PrintToString(arguments);
    }
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordUsage, NoOrUnknownCommand_IsCode2) {
    EXPECT_EQ(RunProcess({QTRACE_PROGRAM}).exitCode, 2);
    EXPECT_EQ(RunProcess({QTRACE_PROGRAM, "fly"}).exitCode, 2);
}

TEST_F(RecordUsage, HelpAndVersion_AreCode0OnStandardOutput) {
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"--help"}, {"--version"}, {"record", "--help"}}) {
        std::vector<std::string> command = {QTRACE_PROGRAM};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const ProcessResult run = RunProcess(command);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_NE(run.out, "");
        EXPECT_EQ(run.err, "");
    }
}

TEST_F(RecordUsage, MissingLog_IsNamedWithTheReason) {
    const ProcessResult run = Record({(m_folder.Path() / "nowhere.nmea").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("nowhere.nmea"), std::string::npos);
    EXPECT_NE(run.err.find("No such file"), std::string::npos);
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordUsage, FolderAsLog_IsNamedWithTheReason) {
    const ProcessResult run = Record({m_folder.Path().string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("Is a directory"), std::string::npos);
}

TEST_F(RecordUsage, NoUsableFix_SavesNothingAndSaysWhy) {
    const std::string voidFix = NmeaLine("GPRMC,085412,V,,,,,,,030414,,,N");
    const ProcessResult run = Record({Log("# a log\n" + voidFix + voidFix + "$GPRMC,085411,A*FF\n")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("no usable fix"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("1 bad checksum, 2 no fix"), std::string::npos) << run.err;
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordUsage, EmptyLog_IsCode1) {
    const ProcessResult run = Record({Log("")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("no usable fix"), std::string::npos);
}

// The only fix opens a run that never ends, so there is no point.
TEST_F(RecordUsage, SingleFix_SavesNothingAndSaysWhy) {
    const ProcessResult run = Record({Log(Fix(1))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("none of 1 fix became a point"), std::string::npos) << run.err;
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordUsage, ReadOnlyDeviceFolder_IsNamedWithTheReason) {
    fs::permissions(m_folder.Path(), fs::perms(0755));
    fs::create_directory(m_device);
    fs::permissions(m_device, fs::perms(0555));
    ProcessOptions options;
    options.asNobody = true;
    const ProcessResult run = Record({Log(Fix(1) + Fix(2) + Fix(3))}, options);
    fs::permissions(m_device, fs::perms(0755));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find(m_device.string()), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("Permission denied"), std::string::npos) << run.err;
}

TEST_F(RecordUsage, RecordingThatCannotBeOpened_IsNamed) {
    fs::create_directories(PointFile());  // a folder where the point file should be
    const ProcessResult run = Record({Log(Fix(1) + Fix(2) + Fix(3))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot be opened for writing"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find((m_device / "App").string()), std::string::npos) << run.err;
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordUsage, FileWhereAFolderShouldBe_IsNamed) {
    fs::create_directories(m_device);
    WriteFile(m_device / "UserData", "");
    const ProcessResult run = Record({Log(Fix(1) + Fix(2) + Fix(3))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find((m_device / "UserData").string()), std::string::npos) << run.err;
}

// Corners everywhere, so that thinning keeps all points: the saved file then is larger than the recording, and
// a limit between the two cuts the file only.
TEST_F(RecordUsage, SaveCutShort_IsCode1AndTheRecordingStays) {
    std::string log;
    for (int i = 0; i < 40; ++i)
        log += NmeaLine("GPRMC,0854" + std::to_string(10 + i) + ",A,5222." + std::to_string(1000 + 137 * i) +
                        ",N,00454." + (i % 2 == 0 ? "1000" : "9000") + ",E,9.0,251.3,030414,,,A");
    ProcessOptions options;
    options.fileSizeLimit = 3000;
    const ProcessResult run = Record({Log(log)}, options);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("the recording itself is kept"), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.size(), 39u);
}

}  // namespace
}  // namespace host
