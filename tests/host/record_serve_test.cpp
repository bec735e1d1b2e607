// `qtrace record --serve`: the page that shows a recording while it grows.
#include <csignal>

#include <gtest/gtest.h>

#include "host/text/json.h"
#include "tests/host/page_process.h"

namespace host {
namespace {

class RecordServe : public PageTest {
 protected:
    static std::string Piece(std::size_t from, std::size_t bytes) { return SampleDrive().substr(from, bytes); }
};

// The last number behind this key that a stream of events has told so far.
long LastNumber(const std::string& events, const std::string& key) {
    const std::string before = '"' + key + "\":";
    const std::size_t at = events.rfind(before);
    long number = -1;
    if (at != std::string::npos)
        std::from_chars(events.data() + at + before.size(), events.data() + events.size(), number);
    return number;
}

TEST_F(RecordServe, Points_ArriveWhileTheRecordingGoesOn) {
    Process recorder(Served("record", {"-", "--serve=0"}));
    const int port = Port();
    ASSERT_GT(port, 0) << ReadFile(Output());
    OpenConnection early(port, Get(port, "/events"));
    const std::string first = early.ReadUntil(Has("event: track"));
    EXPECT_TRUE(Has("event: track")(first)) << first;
    EXPECT_TRUE(Has("\"state\":\"recording\"")(first)) << first;
    for (std::size_t part = 0; part < 3; ++part) {
        ASSERT_TRUE(recorder.Write(Piece(20'000 * part, 20'000)));
        const long expected =
            static_cast<long>(PointsEachSecond(FixesIn(Piece(0, 20'000 * (part + 1)))).size()) - 1;
        const std::string told = early.ReadUntil(
            [&](const std::string& text) { return LastNumber(text, "point_count") >= expected; });
        EXPECT_GE(LastNumber(told, "point_count"), expected);
    }
    OpenConnection late(port, Get(port, "/events"));
    const std::string whole = late.ReadUntil(Has("event: track"));
    EXPECT_TRUE(Has("event: track")(whole)) << whole;
    EXPECT_GT(LastNumber(whole, "point_count"), 100);
}

TEST_F(RecordServe, EndOfInput_SavesAndThePageStaysUntilASignal) {
    Process recorder(Served("record", {"-", "--serve=0", "--save-as", "drive"}));
    const int port = Port();
    ASSERT_GT(port, 0) << ReadFile(Output());
    OpenConnection events(port, Get(port, "/events"));
    ASSERT_TRUE(recorder.Write(Piece(0, 60'000)));
    recorder.CloseInput();
    EXPECT_NE(events.ReadUntil(Has("\"state\":\"ended\"")).find("\"state\":\"ended\""), std::string::npos);
    EXPECT_TRUE(Eventually([&] { return Json::parse(Ask(port, "/api/tracks").body)["tracks"].size() == 1; }));
    recorder.Send(SIGTERM);
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists(File("drive.gpx")));
}

// The page that is still open is no reason to keep the next drive from being recorded.
TEST_F(RecordServe, EndOfInput_LetsTheNextRecorderIn) {
    const std::string log = (m_folder.Path() / "log.nmea").string();
    WriteFile(log, Piece(0, 60'000));
    Process recorder(Served("record", {log, "--serve=0"}));
    const int port = Port();
    ASSERT_GT(port, 0) << ReadFile(Output());
    EXPECT_TRUE(Eventually([&] { return ReadFile(Output()).find("the page stays at") != std::string::npos; }));
    const ProcessResult next = RunProcess(Command("record", {log, "--no-save"}));
    EXPECT_EQ(next.exitCode, 0) << next.err;
    EXPECT_EQ(Ask(port, "/").status, 200);
    recorder.Send(SIGTERM);
    EXPECT_EQ(recorder.Wait().exitCode, 0);
}

TEST_F(RecordServe, SignalWhileRecording_SavesAndEndsWithPagesOpen) {
    Process recorder(Served("record", {"-", "--serve=0", "--save-as", "drive"}));
    const int port = Port();
    ASSERT_GT(port, 0) << ReadFile(Output());
    OpenConnection events(port, Get(port, "/events"));
    ASSERT_TRUE(recorder.Write(Piece(0, 60'000)));
    events.ReadUntil([](const std::string& text) { return LastNumber(text, "point_count") > 200; });
    recorder.Send(SIGINT);
    EXPECT_EQ(recorder.Wait(std::chrono::seconds(20)).exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists(File("drive.gpx")));
}

// The listener asks for the events and never reads them: what the recording does must not depend on it.
TEST_F(RecordServe, ListenerThatDoesNotRead_DoesNotHoldUpTheRecording) {
    Process recorder(Served("record", {"-", "--serve=0", "--save-as", "drive"}));
    const int port = Port();
    ASSERT_GT(port, 0) << ReadFile(Output());
    const OpenConnection deaf(port, Get(port, "/events"));
    ASSERT_TRUE(recorder.Write(SampleDrive()));
    recorder.CloseInput();
    EXPECT_TRUE(Eventually([&] { return std::filesystem::exists(File("drive.gpx")); }));
}

TEST_F(RecordServe, Recording_ThatIsThereAlready_IsShown) {
    const std::string log = (m_folder.Path() / "log.nmea").string();
    WriteFile(log, Piece(0, 60'000));
    ASSERT_EQ(RunProcess(Command("record", {log, "--no-save"})).exitCode, 0);
    Process recorder(Served("record", {"-", "--serve=0"}));
    const int port = Port();
    ASSERT_GT(port, 0) << ReadFile(Output());
    OpenConnection events(port, Get(port, "/events"));
    const std::string told = events.ReadUntil(Has("event: track"));
    EXPECT_TRUE(Has("event: track")(told)) << told;
    EXPECT_EQ(LastNumber(told, "point_count"),
              static_cast<long>(PointsEachSecond(FixesIn(Piece(0, 60'000))).size()));
}

TEST_F(RecordServe, PortThatCannotBe_IsRefusedBeforeAnythingIsRecorded) {
    EXPECT_EQ(RunProcess(Command("record", {"-", "--serve=70000"})).exitCode, 2);
    EXPECT_EQ(RunProcess(Command("record", {"-", "--serve=x"})).exitCode, 2);
    Process first(Served("serve", {"--port", "0"}));
    const int port = Port();
    ASSERT_GT(port, 0);
    const ProcessResult run = RunProcess(Command("record", {"-", "--serve=" + std::to_string(port)}));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot be used: Address already in use"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace host
