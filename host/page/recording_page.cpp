#include "host/page/recording_page.h"

#include "host/tracks/library.h"

namespace host {

RecordingPage::RecordingPage(const HostSettings& settings)
    : m_index(settings),
      m_server(m_index, m_feed, {"Tracks", true, std::nullopt}, ColorText(ColorValue(settings.color))) {}

// Who asks while the recording is not shown is told of a library, and hears no whole track any more.
std::optional<std::string> RecordingPage::Start(int port) {
    ShowRecording();
    return m_server.Start(port);
}

void RecordingPage::ShowRecording() {
    CTrackEx& recording = *CTrackMan::Instance()->GetLogTrack();
    for (int i = 0; i < recording.GetSliceNum(); ++i)
        for (const TckPt& point : recording.GetSliceTrace(i)->GetPtList()) m_feed.Publish(point);
    m_feed.SetState(RecorderState::Recording);
}

LiveRecording::Observer RecordingPage::Observer() {
    return [this](const TckPt& point) { m_feed.Publish(point); };
}

}  // namespace host
