// `qtrace record` stopped by a signal, and killed in the middle.
#include <csignal>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"

namespace host {
namespace {

class RecordStop : public Recorder, public ::testing::WithParamInterface<int> {
 protected:
    // Feeds the first part of the sample drive and waits until most of it is on disk.
    void FeedBeginning(Process& recorder, std::size_t bytes) {
        ASSERT_TRUE(recorder.Write(SampleDrive().substr(0, bytes)));
        const std::size_t fixes = FixesIn(SampleDrive().substr(0, bytes)).size();
        ASSERT_TRUE(Eventually([&] { return Ring().points.size() + 100 > fixes; })) << Ring().points.size();
    }
};

// The signals with which terminals and service managers stop a program.
TEST_P(RecordStop, Signal_SavesWhatWasRecorded) {
    Process recorder(Command({"-"}));
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

TEST_F(RecordStop, SignalBeforeAnyFix_IsNoFailure) {
    Process recorder(Command({"-"}));
    ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(PointFile()); }));
    recorder.Send(SIGTERM);
    EXPECT_EQ(recorder.Wait().exitCode, 0);
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordStop, Killed_LeavesEveryWrittenPointToTheNextRun) {
    const std::string drive = SampleDrive();
    const std::size_t half = drive.find("\r\n", drive.size() / 2) + 2;
    {
        Process recorder(Command({"-"}));
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

// Wherever the kill falls, what was written stays: each run adds to the one before.
TEST_F(RecordStop, KilledAgainAndAgain_NeverLosesAPoint) {
    const std::string drive = SampleDrive();
    std::vector<TckPt> before;
    for (std::size_t part = 0; part < 6; ++part) {
        Process recorder(Command({"-"}));
        recorder.Write(drive.substr(part * 60'000, 60'000));
        Eventually([&] { return Ring().points.size() >= before.size() + 60 * (part + 1); });
        recorder.Send(SIGKILL);
        recorder.Wait();
        const std::vector<TckPt> now = Ring().points;
        ASSERT_GE(now.size(), before.size());
        EXPECT_TRUE(SameFixes(Slice(now, 0, before.size()), before));
        before = now;
    }
    EXPECT_GT(before.size(), 360u);
}

}  // namespace
}  // namespace host
