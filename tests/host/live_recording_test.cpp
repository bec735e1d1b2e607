// The recording as the commands of the program drive it, in this process. As a user sees it:
// record_command_test.cpp.
#include "host/recording/live_recording.h"

#include <gtest/gtest.h>

#include "tests/host/recorder.h"

namespace host {
namespace {

class LiveRecordingTest : public ::testing::Test {
 protected:
    LiveRecordingTest() {
        m_settings.device = m_folder.Path().string();
        m_device.emplace(m_settings);
        EXPECT_EQ(m_device->Prepare(), std::nullopt);
        m_recording.emplace(*m_device, m_settings, true,
                            [this](const std::string& message) { m_said.push_back(message); });
        EXPECT_EQ(m_recording->Open(m_stop), std::nullopt);
    }
    std::size_t PointsOnDisk() const { return ReadRingFile(m_folder.Path() / "App" / "Log.dat").points.size(); }
    void Offer(int count) {
        for (const TckPt& fix : FixesIn(Drive(count))) m_recording->Offer(fix);
    }

    TemporaryFolder m_folder;
    HostSettings m_settings;
    std::optional<DeviceFolder> m_device;
    StopSignals m_stop;
    std::vector<std::string> m_said;
    std::optional<LiveRecording> m_recording;
};

TEST_F(LiveRecordingTest, Observer_SeesEachPointAtOnce) {
    std::vector<TckPt> seen;
    m_recording->Start([&](const TckPt& point) { seen.push_back(point); });
    Offer(20);
    EXPECT_EQ(seen.size(), 19u);
    EXPECT_EQ(m_recording->PointsWaiting(), 19u);
    EXPECT_EQ(PointsOnDisk(), 0u);
}

TEST_F(LiveRecordingTest, Flush_WritesWhatWaits) {
    m_recording->Start();
    EXPECT_EQ(m_recording->Waiting().count(), 0);
    Offer(20);
    EXPECT_GT(m_recording->Waiting().count(), 0);
    m_recording->Flush();
    EXPECT_EQ(PointsOnDisk(), 19u);
    EXPECT_EQ(m_recording->PointsAdded(), 19u);
    EXPECT_EQ(m_recording->Waiting().count(), 0);
}

TEST_F(LiveRecordingTest, FlushThatOverwrites_SavesFirst) {
    m_recording->Start();
    Offer(9999);
    m_recording->Flush();
    ASSERT_TRUE(m_recording->AutomaticSaves().empty());
    for (const TckPt& fix : Slice(FixesIn(Drive(10010)), 9999, 10010)) m_recording->Offer(fix);
    m_recording->Flush();
    ASSERT_EQ(m_recording->AutomaticSaves().size(), 1u);
    EXPECT_EQ(m_recording->AutomaticSaves()[0].start, FixesIn(Drive(1))[0].lTime);
    EXPECT_TRUE(m_said.empty());
    EXPECT_EQ(PointsOnDisk(), 10000u);
}

// Each turn of the ring is one save, however the points are written.
TEST_F(LiveRecordingTest, ManyFlushes_SaveOnceForEachTurn) {
    m_recording->Start();
    int count = 0;
    for (const TckPt& fix : FixesIn(Drive(20500))) {
        m_recording->Offer(fix);
        const bool isNearTheTurn = ++count % 10000 > 9800;
        if (isNearTheTurn && count % 7 == 0) m_recording->Flush();
    }
    EXPECT_EQ(m_recording->AutomaticSaves().size(), 2u);
    EXPECT_EQ(m_recording->Troubles(), 0);
}

TEST_F(LiveRecordingTest, FileThatIsCut_IsFound) {
    m_recording->Start();
    Offer(62);
    ASSERT_EQ(m_recording->Check(), std::nullopt);
    std::filesystem::resize_file(m_folder.Path() / "App" / "Log.dat", 100);
    EXPECT_NE(m_recording->Check(), std::nullopt);
}

// Trying tells nothing here: the folder takes files.
TEST_F(LiveRecordingTest, FileThatIsCutThoughTheStorageHasRoom_IsToldSo) {
    m_recording->Start();
    Offer(62);
    std::filesystem::resize_file(m_folder.Path() / "App" / "Log.dat", 100);
    EXPECT_TRUE(
        m_recording->Check()->ends_with("(a trial file of 65536 bytes could be written there just now)"))
        << *m_recording->Check();
}

// Told once each time, and not with every batch.
TEST_F(LiveRecordingTest, FileThatIsGoodAgain_MayBreakOnceMore) {
    const std::filesystem::path file = m_folder.Path() / "App" / "Log.dat";
    const std::vector<TckPt> fixes = FixesIn(Drive(600));
    std::size_t next = 0;
    const auto offerMore = [&] {
        for (int i = 0; i < 62; ++i) m_recording->Offer(fixes[next++]);
        m_recording->Flush();
    };
    m_recording->Start();
    for (int time = 1; time <= 2; ++time) {
        offerMore();
        EXPECT_EQ(m_recording->Check(), std::nullopt);
        std::filesystem::resize_file(file, 1'000'000);
        offerMore();
        offerMore();
        EXPECT_EQ(m_recording->Troubles(), time);
        std::filesystem::resize_file(file, 4 + 48 * m_recording->Points());
    }
}

TEST_F(LiveRecordingTest, Distance_IsAlongThePoints) {
    m_recording->Start();
    Offer(100);
    double length = 0;
    const std::vector<TckPt> fixes = FixesIn(Drive(100));
    for (std::size_t i = 2; i < fixes.size(); ++i) {
        double step = 0, bearing = 0;
        CalDistance(fixes[i - 1].dLatitude, fixes[i - 1].dLongitude, fixes[i].dLatitude, fixes[i].dLongitude, 0,
                    &step, &bearing);
        length += step;
    }
    EXPECT_NEAR(m_recording->Distance(), length, 1e-6);
}

TEST_F(LiveRecordingTest, Behind_IsFromTheLastPointToTheNewestFix) {
    m_recording->Start();
    EXPECT_EQ(m_recording->Behind(), std::nullopt);
    const std::vector<TckPt> fixes = FixesIn(Drive(20));
    m_recording->Offer(fixes[0]);
    EXPECT_EQ(m_recording->Behind(), std::nullopt);  // there is no point yet
    m_recording->Offer(fixes[5]);
    ASSERT_NE(m_recording->Behind(), std::nullopt);
    EXPECT_EQ(m_recording->Behind()->seconds, 5);
    double metres = 0, bearing = 0;
    CalDistance(fixes[0].dLatitude, fixes[0].dLongitude, fixes[5].dLatitude, fixes[5].dLongitude, 0, &metres,
                &bearing);
    EXPECT_NEAR(m_recording->Behind()->metres, metres, 1e-9);
}

// The point is the one that is on disk at the end.
TEST_F(LiveRecordingTest, Behind_IsFromTheLastPointOfTheFile) {
    for (const EnumRecTrack mode : {RecTrackByTime, RecTrackByDist, RecTrackAuto}) {
        m_recording.reset();
        m_settings.record = {mode, 30, 8, true};
        m_recording.emplace(*m_device, m_settings, true, [](const std::string&) {});
        ASSERT_EQ(m_recording->Open(m_stop), std::nullopt);
        ASSERT_EQ(m_recording->Clear(), std::nullopt);
        m_recording->Start();
        Offer(100);
        m_recording->Stop();
        const RingFile ring = ReadRingFile(m_folder.Path() / "App" / "Log.dat");
        ASSERT_FALSE(ring.points.empty());
        ASSERT_NE(m_recording->Behind(), std::nullopt);
        EXPECT_EQ(m_recording->Behind()->seconds, FixesIn(Drive(100)).back().lTime - ring.points.back().lTime);
    }
}

TEST_F(LiveRecordingTest, Clear_LeavesNothing) {
    m_recording->Start();
    Offer(62);
    m_recording->Stop();
    EXPECT_EQ(m_recording->Clear(), std::nullopt);
    EXPECT_EQ(m_recording->Points(), 0u);
    EXPECT_EQ(PointsOnDisk(), 0u);
    EXPECT_EQ(m_recording->Check(), std::nullopt);
}

}  // namespace
}  // namespace host
