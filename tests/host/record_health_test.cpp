// What the host notices that the library does not tell: points that did not reach the disk, a damaged
// recording, automatic saves; and what it shows on a terminal.
#include <csignal>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"

namespace fs = std::filesystem;

namespace host {
namespace {

using RecordHealth = Recorder;

TEST_F(RecordHealth, RecordingCutShort_IsCode1WithoutASaveToo) {
    ProcessOptions options;
    options.fileSizeLimit = 3000;  // 62 points
    const ProcessResult run = Record({Log(Drive(200)), "--no-save"}, options);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("Log.dat holds 60 of "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("what it lacks is lost"), std::string::npos) << run.err;
    EXPECT_TRUE(SameFixes(Ring().points, Slice(FixesIn(Drive(200)), 0, 60)));
}

// Memory holds what the file does not, and so does the track.
TEST_F(RecordHealth, RecordingCutShort_IsSavedWholeAllTheSame) {
    std::string line;
    for (int i = 0; i < 200; ++i)
        line += NmeaLine("GPRMC,08" + Digits(i / 60, 2) + Digits(i % 60, 2) + ",A,5200." + Digits(i * 30, 4) +
                         ",N,00454.1000,E,9.0,0.0,030414,,,A");
    ProcessOptions options;
    options.fileSizeLimit = 3000;
    const ProcessResult run = Record({Log(line)}, options);
    EXPECT_EQ(run.exitCode, 1);
    ASSERT_EQ(SavedTracks().size(), 1u) << run.err;
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).back().time, "2014-04-03T08:03:18Z");
}

TEST_F(RecordHealth, DamagedRecording_IsToldWithThePlaceOfTheFile) {
    ASSERT_EQ(Record({Log(Drive(50)), "--no-save"}).exitCode, 0);
    const std::string damaged = ReadFile(PointFile()) + "x";
    WriteFile(PointFile(), damaged);
    const ProcessResult run = Record({Log(Drive(50))});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const fs::path kept = m_device / "UserData" / "Track" / "TmpTk.bk";
    EXPECT_NE(run.err.find("the damaged file is kept as " + kept.string()), std::string::npos) << run.err;
    EXPECT_EQ(ReadFile(kept), damaged);
}

TEST_F(RecordHealth, BackupFromBefore_IsNotToldAgain) {
    fs::create_directories(m_device / "UserData" / "Track");
    WriteFile(m_device / "UserData" / "Track" / "TmpTk.bk", "");
    EXPECT_EQ(Record({Log(Drive(50))}).err, "");
}

TEST_F(RecordHealth, AutomaticSave_IsCheckedAndListed) {
    const ProcessResult run = Record({Log(Drive(10200)), "--save-as", "end"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    ASSERT_EQ(SavedTracks().size(), 2u);
    EXPECT_NE(run.out.find(SavedTracks()[0].string()), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(SavedTracks()[1].string()), std::string::npos) << run.out;
}

TEST_F(RecordHealth, AutomaticSaveThatFails_IsToldAndRecordedOn) {
    const fs::path tracks = m_device / "UserData" / "Track";
    ASSERT_EQ(Record({Log(Drive(9000)), "--no-save"}).exitCode, 0);
    fs::permissions(m_folder.Path(), fs::perms(0777));
    for (const auto& entry : fs::recursive_directory_iterator(m_device))
        fs::permissions(entry, fs::perms(0777));
    fs::permissions(tracks, fs::perms(0555));
    ProcessOptions options;
    options.asNobody = true;
    const std::string rest = Drive(10500).substr(Drive(9000).size());
    const ProcessResult run = Record({Log(rest)}, options);
    fs::permissions(tracks, fs::perms(0755));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("not saved before its beginning is overwritten"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("Permission denied"), std::string::npos) << run.err;
    EXPECT_EQ(Ring().points.back().lTime, FixesIn(rest).rbegin()[1].lTime);
}

// What the periodic writing overwrites is saved as well.
TEST_F(RecordHealth, LastBatchThatOverwrites_SavesFirst) {
    ASSERT_EQ(Record({Log(Drive(9961)), "--no-save"}).exitCode, 0);
    ASSERT_EQ(Ring().points.size(), 9960u);
    const std::string rest = Drive(10011).substr(Drive(9961).size());
    const ProcessResult run = Record({Log(rest), "--save-as", "end"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    ASSERT_EQ(SavedTracks().size(), 2u) << run.err;
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).front().time, "2014-04-03T00:00:00Z");
}

TEST_F(RecordHealth, ModeTime_CountsOnlyWhatBecomesAPoint) {
    const ProcessResult run = Record({Log(Drive(10300)), "--mode", "time", "--time", "1"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), 10300);
    EXPECT_EQ(SavedTracks().size(), 2u);
}

// Many large tracks, so that the stop comes while they are read.
TEST_F(RecordHealth, StopWhileLoading_EndsCleanly) {
    ASSERT_EQ(Record({Log(Drive(5000)), "--save-as", "a"}).exitCode, 0);
    const fs::path track = SavedTracks()[0];
    for (int i = 0; i < 4000; ++i)
        fs::create_hard_link(track, track.parent_path() / ("b" + std::to_string(i) + ".gpx"));
    const auto tracks = SavedTracks();
    const std::string ring = ReadFile(PointFile());
    Process recorder(Command({"-"}));
    ASSERT_TRUE(recorder.Write(Drive(20)));
    ASSERT_TRUE(Eventually([&] { return WaitsForSignals(recorder.Id()); }));
    recorder.Send(SIGTERM);
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedTracks(), tracks);
    EXPECT_EQ(ReadFile(PointFile()), ring);
}

class RecordTerminal : public Recorder {
 protected:
    static ProcessOptions Terminal(unsigned short columns) {
        ProcessOptions options;
        options.onTerminal = true;
        options.terminalColumns = columns;
        return options;
    }
    // The longest of the texts that were written over each other.
    static std::size_t LongestLine(const std::string& shown) {
        std::size_t longest = 0;
        for (std::size_t at = 0; at < shown.size();) {
            const std::size_t end = std::min(shown.find_first_of("\r\n", at), shown.size());
            const std::string line = shown.substr(at, end - at);
            longest = std::max(longest, line.starts_with("\x1b[K") ? line.size() - 3 : line.size());
            at = end + 1;
        }
        return longest;
    }
};

TEST_F(RecordTerminal, LiveSource_ShowsTheDrive) {
    Process recorder(Command({"-"}), Terminal(120));
    ASSERT_TRUE(recorder.Write(Drive(30)));
    EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("28 points") != std::string::npos; }))
        << recorder.ErrorsSoFar();
    EXPECT_NE(recorder.ErrorsSoFar().find("UTC  fix  17 km/h"), std::string::npos) << recorder.ErrorsSoFar();
    EXPECT_EQ(recorder.Wait().exitCode, 0);
}

TEST_F(RecordTerminal, NarrowTerminal_IsNeverWrapped) {
    const ProcessResult run = Record({Log(SampleDrive())}, Terminal(24));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_LE(LongestLine(run.err), 23u) << run.err;
    EXPECT_GT(LongestLine(run.err), 0u);
}

TEST_F(RecordTerminal, NoTerminal_IsQuietForFiles) { EXPECT_EQ(Record({Log(SampleDrive())}).err, ""); }

}  // namespace
}  // namespace host
