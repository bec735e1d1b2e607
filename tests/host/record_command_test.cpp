// What `qtrace record` records, saves and tells. Wrong usage and bad places: record_usage_test.cpp.
// Being stopped and killed: record_stop_test.cpp. Real logs: record_real_log_test.cpp.
#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"
#include "tests/support/nmea.h"

namespace fs = std::filesystem;

namespace host {
namespace {

using RecordCommand = Recorder;

std::string SampleFile() { return (fs::path(QTRACE_SAMPLES) / "drive.nmea").string(); }

TEST_F(RecordCommand, SampleDrive_IsRecordedFixByFix) {
    const ProcessResult run = Record({SampleFile()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const std::vector<TckPt> fixes = FixesIn(SampleDrive());
    EXPECT_TRUE(SameFixes(Ring().points, PointsEachSecond(fixes)));
    EXPECT_EQ(Ring().points.size(), fixes.size() - 1);  // the last one's run is open
}

TEST_F(RecordCommand, SampleDrive_IsSummedUp) {
    const ProcessResult run = Record({SampleFile()});
    const std::vector<TckPt> fixes = FixesIn(SampleDrive());
    EXPECT_EQ(SummaryNumber(run.out, "  read"), static_cast<long>(fixes.size())) << run.out;
    EXPECT_EQ(SummaryLine(run.out, "  refused"), "242 no fix");
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), static_cast<long>(Ring().points.size()));
    EXPECT_NE(SummaryLine(run.out, "  in all").find(" in 2 slices"), std::string::npos);
    EXPECT_EQ(SummaryLine(run.out, "  ring"), "27.5 % full");  // 2751 of 10000
    EXPECT_EQ(SummaryLine(run.out, "  start"), "2024-05-12 08:15:06 UTC");
    EXPECT_EQ(SummaryLine(run.out, "  end"), "2024-05-12 09:43:51 UTC");
}

// By time every fix or every eighth is a point. By auto a run that is not complete at the end has no point: the
// one of 20 s that began with the fix 40.
TEST_F(RecordCommand, FixesBehindTheLastPoint_AreToldAtTheEnd) {
    const ProcessResult all = Record({Log(Drive(50)), "--mode", "time", "--time", "1"});
    EXPECT_EQ(SummaryLine(all.out, "  behind"), "") << all.out;
    const ProcessResult each = Record({Log(Drive(50)), "--mode", "time", "--time", "8"});
    const std::vector<TckPt> fixes = FixesIn(Drive(50));
    double metres = 0, bearing = 0;  // points are the fixes 0, 8, .. 48
    CalDistance(fixes[48].dLatitude, fixes[48].dLongitude, fixes[49].dLatitude, fixes[49].dLongitude, 0,
                &metres, &bearing);
    EXPECT_EQ(SummaryLine(each.out, "  behind"),
              "the newest fix by 1 s, " + std::to_string(std::lround(metres)) + " m");
    const ProcessResult far = Record({Log(Drive(50)), "--distance", "100000", "--time", "20"});
    EXPECT_EQ(SummaryLine(far.out, "  behind").rfind("the newest fix by 29 s, ", 0), 0u) << far.out;
}

TEST_F(RecordCommand, SampleDrive_IsSavedAsOneTrack) {
    const ProcessResult run = Record({SampleFile()});
    ASSERT_EQ(SavedTracks().size(), 1u);
    const fs::path track = SavedTracks()[0];
    EXPECT_EQ(SummaryLine(run.out, "Saved"), track.string());
    EXPECT_EQ(SummaryLine(run.out, "  name"), track.stem().string());
    EXPECT_EQ(track.filename().string().rfind("AutoSaveTrk-", 0), 0u);
    EXPECT_EQ(SummaryNumber(run.out, "  points"), static_cast<long>(GpxPointsOf(track).size()));
}

TEST_F(RecordCommand, StandardInput_RecordsTheSame) {
    Process recorder(Command({"-"}));
    ASSERT_TRUE(recorder.Write(SampleDrive()));
    EXPECT_EQ(recorder.Wait().exitCode, 0);
    EXPECT_TRUE(SameFixes(Ring().points, PointsEachSecond(FixesIn(SampleDrive()))));
}

TEST_F(RecordCommand, NmeaOption_IsTheLogToo) {
    EXPECT_EQ(Record({"--nmea", Log(Drive(50))}).exitCode, 0);
    EXPECT_EQ(Ring().points.size(), 49u);
}

// The first fix is a point, and then each that is ten seconds or more behind the last point.
TEST_F(RecordCommand, ModeTime_KeepsAPointEachTenSeconds) {
    ASSERT_EQ(Record({SampleFile(), "--mode", "time", "--time", "10"}).exitCode, 0);
    std::vector<TckPt> expected;
    for (const TckPt& fix : FixesIn(SampleDrive()))
        if (expected.empty() || fix.lTime - expected.back().lTime >= 10) expected.push_back(fix);
    EXPECT_TRUE(SameFixes(Ring().points, expected));
}

// The way of a step is the mean speed times its seconds. When a run of steps has made 100 m, the fix that began
// it is a point, and the next run begins. The tunnels and the rest are the steps of 5 s and more, which are
// measured by position: each is longer than 100 m or, for the rest, ends where it began.
TEST_F(RecordCommand, ModeDistance_KeepsAPointEachHundredMetres) {
    ASSERT_EQ(Record({SampleFile(), "--mode", "distance", "--distance", "100"}).exitCode, 0);
    const std::vector<TckPt> fixes = FixesIn(SampleDrive());
    std::vector<TckPt> expected;
    double way = 0;
    for (std::size_t i = 1, run = 0; i < fixes.size(); ++i) {
        const int seconds = fixes[i].lTime - fixes[i - 1].lTime;
        if (seconds < 5)
            way += (fixes[i].dSpeed + fixes[i - 1].dSpeed) * seconds * 0.5;
        else
            way += seconds < 1800 ? 1500 : 0;
        if (way < 100) continue;
        expected.push_back(fixes[run]);
        run = i;
        way = 0;
    }
    EXPECT_TRUE(SameFixes(Ring().points, expected));
}

TEST_F(RecordCommand, ModeDistance_KeepsNothingWhileStanding) {
    std::string log;
    for (int second = 10; second < 60; ++second)
        log += NmeaLine("GPRMC,0854" + std::to_string(second) + ",A,5222.3215,N,00454.5778,E,0.0,,030414,,,A");
    EXPECT_EQ(Record({Log(log), "--mode", "distance"}).exitCode, 1);
    EXPECT_TRUE(Ring().points.empty());
}

// One fix a second at about 4.6 m/s: 30 s pass before 200 m do.
TEST_F(RecordCommand, ModeAuto_TakesWhicheverComesFirst) {
    ASSERT_EQ(Record({Log(Drive(300)), "--mode", "auto", "--distance", "200", "--time", "30"}).exitCode, 0);
    const std::vector<TckPt> points = Ring().points;
    ASSERT_EQ(points.size(), 9u);  // at 0, 30, .. 240 s
    for (std::size_t i = 1; i < points.size(); ++i) EXPECT_EQ(points[i].lTime - points[i - 1].lTime, 30);
}

TEST_F(RecordCommand, Continue_AddsToASavedRecording) {
    const std::string log = Drive(200);
    ASSERT_EQ(Record({Log(log.substr(0, log.size() / 2))}).exitCode, 0);
    const std::size_t before = Ring().points.size();
    const ProcessResult run = Record({Log(log.substr(log.size() / 2)), "--continue"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "continuing a recording of " + std::to_string(before) + " points\n");
    EXPECT_EQ(Ring().points.size(), 198u);  // 99 of each run
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), 99);
    EXPECT_EQ(SavedTracks().size(), 2u);
}

// The recording holds 10000 points. Before its first ones are overwritten, it is saved; at the end it is saved
// again.
TEST_F(RecordCommand, MoreThanTheRecordingHolds_LosesNothing) {
    const std::string log = Drive(10200);
    const ProcessResult run = Record({Log(log)});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::vector<TckPt> points = PointsEachSecond(FixesIn(log));
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), static_cast<long>(points.size()));
    EXPECT_TRUE(SameFixes(Ring().points, Slice(points, points.size() - 10000, points.size())));
    ASSERT_EQ(SavedTracks().size(), 2u);
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).front().time, "2014-04-03T00:00:00Z");
    EXPECT_EQ(GpxPointsOf(SavedTracks()[1]).back().time, "2014-04-03T02:49:58Z");
    EXPECT_GE(GpxPointsOf(SavedTracks()[0]).back().time, GpxPointsOf(SavedTracks()[1]).front().time);
}

TEST_F(RecordCommand, NoOverwrite_KeepsTheOldestAndSaysSo) {
    const std::string log = Drive(10200);
    const ProcessResult run = Record({Log(log), "--no-overwrite"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("the recording is full"), std::string::npos) << run.err;
    EXPECT_TRUE(SameFixes(Ring().points, Slice(FixesIn(log), 0, 10000)));
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), 10000);
    EXPECT_FALSE(SavedTracks().empty());
}

TEST_F(RecordCommand, NoSave_LeavesTheRecordingOnly) {
    const ProcessResult run = Record({Log(Drive(100)), "--no-save"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Ring().points.size(), 99u);
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordCommand, DeviceFolder_ComesFromTheEnvironment) {
    const std::string log = Log(Drive(20));
    const fs::path a = m_folder.Path() / "a", b = m_folder.Path() / "b", c = m_folder.Path() / "c";
    const std::map<std::string, std::string> home = {
        {"HOME", c.string()}, {"XDG_DATA_HOME", ""}, {"QTRACE_DEVICE", ""}};
    const auto with = [&](std::map<std::string, std::string> more) {
        more.insert(home.begin(), home.end());
        ProcessOptions options;
        options.environment = more;
        return RunProcess({QTRACE_PROGRAM, "record", log}, options).exitCode;
    };
    EXPECT_EQ(with({{"QTRACE_DEVICE", a.string()}, {"XDG_DATA_HOME", b.string()}}), 0);
    EXPECT_EQ(with({{"XDG_DATA_HOME", b.string()}}), 0);
    EXPECT_EQ(with({}), 0);
    for (const fs::path& device : {a, b / "qtrace", c / ".local" / "share" / "qtrace"})
        EXPECT_EQ(ReadRingFile(device / "App" / "Log.dat").points.size(), 19u) << device;
}

// A drive down to the beach: 5 m for twenty seconds, then the level of the sea.
TEST_F(RecordCommand, AltitudeOfZero_IsSavedAsOne) {
    std::string log, rest = Drive(50);
    for (int second = 0; second < 50; ++second) {
        log += rest.substr(0, rest.find('\n') + 1) +
               NmeaLine("GPGGA,0000" + Digits(second, 2) + ",5200.0000,N,00454.1000,E,1,9,0.9," +
                        (second < 20 ? "5.0" : "0.0") + ",M,47.0,M,,");
        rest.erase(0, rest.find('\n') + 1);
    }
    ASSERT_EQ(Record({"--nmea", Log(log), "--save-as", "beach"}).exitCode, 0);
    const ProcessResult run =
        RunProcess({QTRACE_PROGRAM, "points", "beach", "--json", "--device", m_device.string()});
    const auto points = nlohmann::json::parse(run.out);
    ASSERT_GT(points.size(), 40u);
    for (const auto& point : points)
        EXPECT_EQ(point["altitude"], point["time"] < "2014-04-03T00:00:20Z" ? 5 : 0) << point;
}

TEST_F(RecordCommand, Terminal_ShowsProgressAndClearsIt) {
    ProcessOptions options;
    options.onTerminal = true;
    const ProcessResult run = Record({SampleFile()}, options);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.err.find(" %"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("fix"), std::string::npos) << run.err;
    EXPECT_TRUE(run.err.ends_with("\r\x1b[K")) << run.err;
}

}  // namespace
}  // namespace host
