// The live page of a recording, in this process. As a user sees it: record_serve_test.cpp.
#include "host/page/recording_page.h"

#include <gtest/gtest.h>

#include "tests/host/page_process.h"

namespace host {
namespace {

using RecordingPageTest = PageTest;

// A page that came in time and was told of a library would hear the points of the recording, never the track.
TEST_F(RecordingPageTest, FirstToAsk_GetsTheRecordingThatIsThere) {
    StopSignals stop;
    const DeviceFolder device(m_settings);
    ASSERT_EQ(device.Prepare(), std::nullopt);
    LiveRecording recording(device, m_settings, false, [](const std::string& message) { FAIL() << message; });
    ASSERT_EQ(recording.Open(stop), std::nullopt);
    recording.Start();
    for (const TckPt& fix : FixesIn(Drive(20))) recording.Offer(fix);
    recording.Flush();

    RecordingPage page(m_settings);
    ASSERT_EQ(page.Start(0), std::nullopt);
    const int port = std::stoi(page.Url().substr(page.Url().rfind(':') + 1));
    OpenConnection first(port, Get(port, "/events"));
    const std::string told = first.ReadUntil(Has("event: track"));
    EXPECT_TRUE(Has("event: track")(told)) << told;
    EXPECT_TRUE(Has("\"state\":\"recording\"")(told)) << told;
    EXPECT_TRUE(Has("\"point_count\":19")(told)) << told;
}

}  // namespace
}  // namespace host
