// `qtrace check`: what it finds wrong with tracks, the recording and the folders
// (host/recording/device_health.h).
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "host/recording/device_health.h"
#include "host/text/output_file.h"
#include "tests/host/commands.h"
#include "tests/host/ring_bytes.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class Check : public Commands {
 protected:
    void SetUp() override {
        ASSERT_EQ(Run("import", {File("lake.gpx", Gpx(GpxTrackText("Lake", 5)))}).exitCode, 0);
        ASSERT_TRUE(fs::exists(Track("Lake")));
    }
    // Changes the stored track's file.
    void Replace(const std::string& from, const std::string& to) const {
        std::string text = ReadFile(Track("Lake"));
        ASSERT_TRUE(Contains(text, from)) << text;
        WriteFile(Track("Lake"), text.replace(text.find(from), from.size(), to));
    }
    // What is wrong with the only track.
    std::string Problems() const {
        const auto json = Json("check");
        EXPECT_EQ(Run("check").exitCode, json.at("good") == true ? 0 : 1);
        return json.at("tracks").at(0).at("problems").dump();
    }
};

TEST_F(Check, GoodDevice_IsCode0) {
    const ProcessResult run = Run("check");
    EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
    EXPECT_EQ(run.out, "Tracks      1, 1 good\nRecording   none\nLeft behind nothing\n");
    EXPECT_EQ(Json("check").at("tracks").at(0).at("points"), 5);
}

TEST_F(Check, SavedRecording_IsGood) {
    const std::string log = File("a.nmea", Run("simulate", {"--duration", "20m"}).out);
    ASSERT_EQ(Run("record", {log}).exitCode, 0);
    const ProcessResult run = Run("check");
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_TRUE(Contains(run.out, "Tracks      2, 2 good")) << run.out;
}

TEST_F(Check, WrongHeader_IsNamed) {
    Replace("<number>5", "<number>6");
    EXPECT_TRUE(Contains(Problems(), "states 6 points, but it holds 5")) << Problems();
}

TEST_F(Check, WrongTimes_AreNamed) {
    Replace("<endtime>2024", "<endtime>2023");
    EXPECT_TRUE(Contains(Problems(), "2024-05-12 08:00:10 UTC to 2023-05-12")) << Problems();
}

TEST_F(Check, WrongLength_IsNamed) {
    Replace("<length>", "<length>9");
    EXPECT_TRUE(Contains(Problems(), "states a length of")) << Problems();
}

TEST_F(Check, CoordinateOutOfRange_IsNamed) {
    Replace("lat=\"47.102", "lat=\"147.102");
    EXPECT_TRUE(Contains(Problems(), "1 point without a valid position")) << Problems();
}

TEST_F(Check, TimesThatGoBack_AreNamed) {
    Replace("08:00:12Z", "07:00:12Z");
    EXPECT_TRUE(Contains(Problems(), "its times go back")) << Problems();
}

TEST_F(Check, CutFile_IsNamedWithTheLine) {
    const std::string text = ReadFile(Track("Lake"));
    WriteFile(Track("Lake"), text.substr(0, text.find("47.103")));
    EXPECT_TRUE(Contains(Problems(), "damaged in line ")) << Problems();
    EXPECT_TRUE(Contains(Problems(), "the library does not list it")) << Problems();
}

// Copied there by hand: nothing of it is damaged.
TEST_F(Check, FileOfAnotherProgram_IsToldApartFromDamage) {
    WriteFile(Track("Pond"), Gpx(GpxTrackText("Pond", 4)));
    WriteFile(Track("Huts"), Gpx("<wpt lat='1' lon='1'/>"));
    WriteFile(Track("Later"), Gpx("<trk/>" + GpxTrackText("Later", 3)));
    const ProcessResult run = Run("check");
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_TRUE(Contains(run.out, "Tracks      4, 4 good\n")) << run.out;
    EXPECT_TRUE(Contains(run.out, "Pond.gpx: it is listed, and has no header of ours; qtrace import"))
        << run.out;
    EXPECT_TRUE(Contains(run.out, "Huts.gpx: it is not listed: its first track has no points")) << run.out;
    EXPECT_TRUE(Contains(run.out, "Later.gpx: it is not listed: it has no header of ours")) << run.out;
    const auto pond = Json("check").at("tracks").at(3);
    EXPECT_TRUE(pond.at("problems").empty()) << pond;
    EXPECT_EQ(pond.at("notes").size(), 1u) << pond;
}

// The library finds a track by its file's name in any letter case and any folder.
TEST_F(Check, FilesOfOneName_AreNotMixedUp) {
    ASSERT_EQ(Run("import", {File("pond.gpx", Gpx(GpxTrackText("Pond", 7)))}).exitCode, 0);
    const fs::path card = m_device / "SDMMC" / "Track";
    fs::create_directories(card);
    fs::copy(Track("Pond"), card / "Lake.gpx");
    fs::rename(Track("Pond"), Track("LAKE"));
    const ProcessResult run = Run("check", {"--card"});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_TRUE(Contains(run.out, "Tracks      3, 3 good\n")) << run.out;
}

TEST_F(Check, LeftoversOfDeadProcesses_AreNamed) {
    const fs::path folder = m_device / "UserData" / "Track";
    WriteFile(folder / ".qtrace-999999999-0.tmp", "");
    WriteFile(folder / (".qtrace-" + std::to_string(getpid()) + "-0.tmp"), "");  // work in hand
    WriteFile(folder / "TmpTk2.bk", "");
    const auto json = Json("check");
    ASSERT_EQ(json.at("left_behind").size(), 2u) << json;
    EXPECT_TRUE(Contains(json.at("left_behind").at(0), ".qtrace-999999999-0.tmp is half written"));
    EXPECT_TRUE(Contains(json.at("left_behind").at(1), "TmpTk2.bk is a damaged recording"));
    EXPECT_EQ(Run("check").exitCode, 1);
}

TEST_F(Check, FileOfAKilledProcess_IsNamedAndOneInHandIsNot) {
    const std::string file = (m_device / "UserData" / "Track" / "half.gpx").string();
    const pid_t killed = fork();
    if (killed == 0) {
        OutputFile output(file, true);
        _exit(output.Write("half") ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(killed, &status, 0), killed);
    ASSERT_EQ(status, 0);
    const OutputFile inHand(file, true);
    const auto left = Json("check").at("left_behind");
    ASSERT_EQ(left.size(), 1u) << left;
    EXPECT_TRUE(Contains(left.at(0), ".qtrace-" + std::to_string(killed) + '-')) << left;
}

TEST_F(Check, DamagedRecording_IsNamed) {
    std::string ring = RingBytes(0, UpTo(20));
    for (const std::size_t slot : {3u, 7u}) ring[4 + 48 * slot] ^= 1;
    WriteFile(m_device / "App" / "Log.dat", ring);
    WriteFile(m_device / "App" / "LogHd.dat", "not this");
    const auto recording = Json("check").at("recording");
    EXPECT_EQ(recording.at("problems"),
              (nlohmann::json{"2 damaged records, in slot 3, 7", "the head file is damaged"}));
    EXPECT_EQ(recording.at("good"), 18);
}

TEST_F(Check, RingThatDoesNotAgree_IsAProblemUnlessItsNoteMendsIt) {
    WriteFile(m_device / "App" / "Log.dat", RingBytes(0, {0, 1}) + "x");
    EXPECT_EQ(Run("check").exitCode, 1);
    WriteFile(m_device / "App" / "Log.dat.redo", NoteBytes(60));
    const ProcessResult run = Run("check");
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_TRUE(Contains(run.out, "its next start completes the append")) << run.out;
}

TEST_F(Check, MissingDeviceFolder_IsCode1AndNotMade) {
    fs::remove_all(m_device);
    const ProcessResult run = Run("check");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "there is no device folder")) << run.err;
    EXPECT_FALSE(fs::exists(m_device));
}

TEST_F(Check, WrongUsageAndFullOutput_AreToldApart) {
    EXPECT_EQ(Run("check", {"--no-such-option"}).exitCode, 2);
    EXPECT_EQ(RunInto("/dev/full", "check").exitCode, 1);
}

TEST(TrackHealth, ReversedTrack_HasTimesInOrder) {
    Points points;
    for (int i = 0; i < 5; ++i) points.push_back(At(47 + i * 0.001, 8, 1000 - i));
    const StatedTrack stated{5, 996, 1000, AidCalLength(points)};
    EXPECT_TRUE(CompareWithPoints(stated, points).empty());
}

}  // namespace
}  // namespace host
