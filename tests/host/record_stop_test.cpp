// `qtrace record` stopped by a signal, and killed in the middle.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"

namespace host {
namespace {

class RecordStop : public Recorder, public ::testing::WithParamInterface<int> {
 protected:
    // Feeds the first part of the sample drive and waits until all of it is on disk that is written in batches
    // of 60.
    void FeedBeginning(Process& recorder, std::size_t bytes) {
        const std::string nmea = SampleDrive().substr(0, bytes);
        ASSERT_TRUE(recorder.Write(nmea));
        const std::size_t written = PointsEachSecond(FixesIn(nmea)).size() / 60 * 60;
        ASSERT_TRUE(Eventually([&] { return Ring().points.size() == written; })) << Ring().points.size();
    }
};

// A named pipe that takes nothing more until it is drained.
class FullPipe {
 public:
    explicit FullPipe(const std::filesystem::path& path) : m_path(path.string()) {
        EXPECT_EQ(mkfifo(m_path.c_str(), 0600), 0);
        m_end = open(m_path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        while (write(m_end, m_bytes.data(), m_bytes.size()) > 0) continue;
    }
    ~FullPipe() { close(m_end); }
    FullPipe(const FullPipe&) = delete;
    FullPipe& operator=(const FullPipe&) = delete;
    const std::string& Path() const { return m_path; }
    void Drain() {
        while (read(m_end, m_bytes.data(), m_bytes.size()) > 0) continue;
    }

 private:
    std::string m_path;
    std::array<char, 4096> m_bytes{};
    int m_end = -1;
};

// The signals with which terminals and service managers stop a program.
TEST_P(RecordStop, Signal_SavesWhatWasRecorded) {
    Process recorder(Command({"-", "--write-after", "3600"}));
    FeedBeginning(recorder, 150'000);
    recorder.Send(GetParam());
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(SavedTracks().size(), 1u);
    EXPECT_TRUE(SameFixes(Ring().points, Slice(FixesIn(SampleDrive()), 0, Ring().points.size())));
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), static_cast<long>(Ring().points.size()));
}

INSTANTIATE_TEST_SUITE_P(Signals, RecordStop, ::testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& signal) { return "Signal" + std::to_string(signal.param); });

// Nobody reads the summary at first: so the program stands between the end of its input and the save, the path
// of its log being longer than its buffer for output.
TEST_F(RecordStop, SignalsBeforeTheSave_DoNotCutItOff) {
    std::filesystem::path folder = m_folder.Path();
    while (folder.native().size() < 3850) folder /= std::string(200, 'x');
    std::filesystem::create_directories(folder);
    const std::filesystem::path log = folder / std::string(4080 - folder.native().size() - 1, 'x');
    WriteFile(log, Drive(50));
    FullPipe summary(m_folder.Path() / "summary");
    std::vector<std::string> command = {"sh", "-c", "exec \"$@\" >" + summary.Path(), "sh"};
    for (const std::string& part : Command({log.string()})) command.push_back(part);
    Process recorder(command);
    ASSERT_TRUE(Eventually([&] { return Ring().points.size() == 49; }));
    for (int i = 0; i < 20; ++i) {
        recorder.Send(i % 2 == 0 ? SIGTERM : SIGINT);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(SavedTracks().empty());
    summary.Drain();
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedTracks().size(), 1u);
}

TEST_F(RecordStop, SignalBeforeAnyFix_IsNoFailure) {
    Process recorder(Command({"-", "--write-after", "3600"}));
    ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(PointFile()); }));
    recorder.Send(SIGTERM);
    EXPECT_EQ(recorder.Wait().exitCode, 0);
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordStop, SignalBeforeAnyFix_SavesWhatAnEarlierRunLeft) {
    ASSERT_EQ(RunProcess(Command({Log(SampleDrive()), "--no-save"})).exitCode, 0);
    Process recorder(Command({"-", "--save-as", "left", "--write-after", "3600"}));
    ASSERT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("continuing") != std::string::npos; }));
    recorder.Send(SIGTERM);
    const ProcessResult run = recorder.Wait();
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedTracks().size(), 1u);
}

TEST_F(RecordStop, Killed_LeavesEveryWrittenPointToTheNextRun) {
    const std::string drive = SampleDrive();
    const std::size_t half = drive.find("\r\n", drive.size() / 2) + 2;
    {
        Process recorder(Command({"-", "--write-after", "3600"}));
        FeedBeginning(recorder, half);
        recorder.Send(SIGKILL);
        EXPECT_EQ(recorder.Wait().signal, SIGKILL);
    }
    const std::vector<TckPt> written = Ring().points;
    ASSERT_GT(written.size(), 1000u);
    EXPECT_TRUE(SameFixes(written, Slice(FixesIn(drive), 0, written.size())));
    EXPECT_TRUE(SavedTracks().empty());

    const ProcessResult run = Record({Log(drive.substr(half))});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "continuing a recording of " + std::to_string(written.size()) + " points\n");
    const std::vector<TckPt> rest = PointsEachSecond(FixesIn(drive.substr(half)));
    std::vector<TckPt> expected = written;
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_TRUE(SameFixes(Ring().points, expected));
    ASSERT_EQ(SavedTracks().size(), 1u);
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).front().time, "2024-05-12T08:15:06Z");
}

// A kill while the program waits for more: each run adds to the one before.
TEST_F(RecordStop, KilledAgainAndAgain_NeverLosesAPoint) {
    const std::string drive = SampleDrive();
    std::vector<TckPt> written;
    for (std::size_t part = 0; part < 6; ++part) {
        const std::string nmea = drive.substr(part * 60'000, 60'000);
        const std::vector<TckPt> points = PointsEachSecond(FixesIn(nmea));
        const std::vector<TckPt> batches = Slice(points, 0, points.size() / 60 * 60);  // written 60 at a time
        written.insert(written.end(), batches.begin(), batches.end());
        Process recorder(Command({"-", "--write-after", "3600"}));
        ASSERT_TRUE(recorder.Write(nmea));
        ASSERT_TRUE(Eventually([&] { return Ring().points.size() == written.size(); })) << Ring().points.size();
        recorder.Send(SIGKILL);
        recorder.Wait();
        EXPECT_TRUE(SameFixes(Ring().points, written));
    }
    EXPECT_GT(written.size(), 2000u);
}

// A kill in the middle of the work, wherever it hits: what one run has written, the next one finds. Its input
// does not end before it is killed.
TEST_F(RecordStop, KilledWhileWriting_NeverLosesAPoint) {
    std::mt19937 random(20240512);
    const std::string nmea = SampleDrive().substr(0, 60'000);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(Record({Log(nmea), "--no-save"}).exitCode, 0);
    const auto wholeRun = std::chrono::steady_clock::now() - start;
    std::vector<TckPt> written = Ring().points;
    for (int kill = 0; kill < 40 && written.size() < 8000; ++kill) {
        Process recorder(Command({"-", "--no-save"}));
        ASSERT_TRUE(recorder.Write(nmea));
        std::this_thread::sleep_for(wholeRun * static_cast<int>(random() % 1000) / 1000);
        recorder.Send(SIGKILL);
        ASSERT_EQ(recorder.Wait().signal, SIGKILL);
        ASSERT_EQ(Record({"-"}).signal, 0);  // opens the recording, as any next run does
        const std::vector<TckPt> now = Ring().points;
        ASSERT_TRUE(SameFixes(Slice(now, 0, written.size()), written)) << "kill " << kill;
        written = now;
    }
}

}  // namespace
}  // namespace host
