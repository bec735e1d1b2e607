// `qtrace record` from GPX documents, and files at a given speed.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class RecordReplay : public Recorder {
 protected:
    std::string Document(const std::string& points) const {
        const fs::path file = m_folder.Path() / "drive.gpx";
        WriteFile(file,
                  "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"a stranger\" "
                  "xmlns=\"http://www.topografix.com/GPX/1/1\"><trk><trkseg>" +
                      points + "</trkseg></trk></gpx>\n");
        return file.string();
    }
    // A point each second, northwards.
    static std::string Point(int second, bool hasTime = true) {
        const std::string time = "<time>2024-05-12T08:00:" + Digits(second, 2) + "Z</time>";
        return "<trkpt lat=\"47.00" + Digits(second, 2) + "\" lon=\"8.5\"><ele>400</ele>" +
               (hasTime ? time : "") + "</trkpt>\n";
    }
    static std::string Points(int count) {
        std::string text;
        for (int second = 0; second < count; ++second) text += Point(second);
        return text;
    }
};

TEST_F(RecordReplay, Document_IsRecordedAndNotTouched) {
    const std::string file = Document(Points(50));
    const std::string before = ReadFile(file);
    const auto written = fs::last_write_time(file);
    const ProcessResult run = Record({"--gpx", file});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(ReadFile(file), before);
    EXPECT_EQ(fs::last_write_time(file), written);
    const std::vector<TckPt> points = Ring().points;
    ASSERT_EQ(points.size(), 49u);
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].lTime, 1'715'500'800 + static_cast<int>(i));
        EXPECT_NEAR(points[i].dLatitude, 47 + static_cast<double>(i) / 10000, 1e-9);
        EXPECT_EQ(points[i].dAltitude, 400);
    }
    EXPECT_EQ(SummaryLine(run.out, "Input"), file);
    EXPECT_EQ(SummaryLine(run.out, "  read"), "50 fixes from 50 points of the track");
}

TEST_F(RecordReplay, ReadOnlyDocument_IsRecorded) {
    const std::string file = Document(Points(50));
    fs::permissions(file, fs::perms(0444));
    EXPECT_EQ(Record({"--gpx", file}).exitCode, 0);
    EXPECT_EQ(Ring().points.size(), 49u);
}

TEST_F(RecordReplay, SavedTrack_CanBeReplayed) {
    ASSERT_EQ(Record({Log(SampleDrive()), "--save-as", "drive"}).exitCode, 0);
    const auto before = GpxPointsOf(SavedTracks()[0]);
    const ProcessResult run = Record({"--gpx", SavedTracks()[0].string(), "--new", "--no-save"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Ring().points.size(), before.size() - 1);
}

// Only those at the beginning have none; the others have that of the point before.
TEST_F(RecordReplay, PointsWithoutTime_AreCounted) {
    const ProcessResult run = Record({"--gpx", Document(Point(0, false) + Point(1) + Point(2) + Point(3))});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SummaryLine(run.out, "  refused"), "1 without time");
    EXPECT_EQ(Ring().points.size(), 2u);
}

TEST_F(RecordReplay, NoDocument_IsRefusedBeforeAnythingIsMade) {
    const std::vector<std::string> wrong = {Log("no document"), m_folder.Path().string(),
                                            (m_folder.Path() / "nowhere.gpx").string()};
    for (const std::string& file : wrong) {
        const ProcessResult run = Record({"--gpx", file});
        EXPECT_EQ(run.exitCode, 1) << file;
        EXPECT_NE(run.err.find(file + " cannot be read: "), std::string::npos) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordReplay, FolderAsLog_IsRefusedBeforeAnythingIsMade) {
    const ProcessResult run = Record({m_folder.Path().string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordReplay, SeveralOrNoSources_AreWrongUsage) {
    const std::string log = Log(Drive(5));
    EXPECT_EQ(Record({}).exitCode, 2);
    EXPECT_EQ(Record({log, "--gpx", log}).exitCode, 2);
    EXPECT_EQ(Record({"--nmea", log, "--gpsd", "localhost"}).exitCode, 2);
    EXPECT_EQ(Record({"--gpsd", "localhost", "--speed", "2"}).exitCode, 2);
    for (const char* speed : {"0", "-1", "fast", "2x", "nan"})
        EXPECT_EQ(Record({log, "--speed", speed}).exitCode, 2) << speed;
    EXPECT_FALSE(fs::exists(m_device));
}

// What waited for its time would be lost at a stop, and could not be read once more.
TEST_F(RecordReplay, SpeedOfAReceiver_IsWrongUsage) {
    const std::string pipe = (m_folder.Path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int writer = open(pipe.c_str(), O_RDWR | O_CLOEXEC);  // so that the pipe can be opened to read
    for (const std::string& source : {std::string("-"), pipe}) {
        const ProcessResult run = Record({source, "--speed", "2"});
        EXPECT_EQ(run.exitCode, 2) << source;
        EXPECT_NE(run.err.find("--speed replays a file; "), std::string::npos) << run.err;
    }
    close(writer);
    EXPECT_EQ(Record({pipe, "--baud", "4800", "--speed", "2"}).exitCode, 2);
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(RecordReplay, SpeedOfAFileAsStandardInput_IsTaken) {
    std::vector<std::string> command = {"sh", "-c", "exec \"$@\" <" + Log(Drive(100)), "sh"};
    for (const std::string& part : Command({"-", "--speed", "1000"})) command.push_back(part);
    const ProcessResult run = RunProcess(command);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Ring().points.size(), 99u);
}

TEST_F(RecordReplay, Speed_RecordsTheSame) {
    const ProcessResult run = Record({Log(Drive(100)), "--speed", "1000"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(SameFixes(Ring().points, PointsEachSecond(FixesIn(Drive(100)))));
}

// At an hour for each second nothing but the stop can end it.
TEST_F(RecordReplay, StopWhileItWaits_SavesWhatWasReplayed) {
    Process recorder(
        Command({"--speed", "0.5", "--write-after", "1", Log(Drive(10) + Drive(500).substr(700))}));
    ASSERT_TRUE(Eventually([&] { return Ring().points.size() >= 2; }));
    recorder.Send(SIGTERM);
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedTracks().size(), 1u);
    EXPECT_LT(Ring().points.size(), 100u);
}

TEST_F(RecordReplay, Gate_CountsWhatItRefuses) {
    std::string points = Points(20);
    const std::string far = "lat=\"47.0010\"";
    points.replace(points.find(far), far.size(), "lat=\"57.0010\"");
    const ProcessResult run = Record({"--gpx", Document(points), "--gate"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SummaryLine(run.out, "  gate"), "refused 1 speed above the limit");
    for (const TckPt& point : Ring().points) EXPECT_LT(point.dLatitude, 48);
}

TEST_F(RecordReplay, GateLimits_NeedTheGate) {
    EXPECT_EQ(Record({Log(Drive(5)), "--max-hdop", "3"}).exitCode, 2);
    EXPECT_EQ(Record({Log(Drive(5)), "--gate", "--max-speed", "-3"}).exitCode, 2);
}

TEST_F(RecordReplay, GateLimit_IsTaken) {
    const ProcessResult run = Record({"--gpx", Document(Points(20)), "--gate", "--max-speed", "5"});
    EXPECT_NE(SummaryLine(run.out, "  gate").find("speed above the limit"), std::string::npos) << run.out;
}

// A receiver that tells its dilution of precision.
TEST_F(RecordReplay, Hdop_ComesFromTheGga) {
    std::string log;
    for (int i = 0; i < 9; ++i) {
        const std::string time = "0800" + Digits(i, 2), place = "4700.00" + Digits(i, 2) + ",N,00830.0000,E";
        log += NmeaLine("GPRMC," + time + ",A," + place + ",3.0,0.0,120524,,,A") +
               NmeaLine("GPGGA," + time + "," + place + ",1,08," + (i == 4 ? "25.0" : "0.9") + ",400.0,M,,,,");
    }
    const ProcessResult run = Record({Log(log), "--gate", "--max-hdop", "3"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SummaryLine(run.out, "  gate"), "refused 1 HDOP above the limit");
}

}  // namespace
}  // namespace host
