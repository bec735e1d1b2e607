// The live page of `qtrace record --serve`: the library and the recording as it grows.
#pragma once

#include <optional>
#include <string>

#include "host/page/live_feed.h"
#include "host/page/page_server.h"
#include "host/page/track_index.h"
#include "host/recording/live_recording.h"
#include "host/recording/stop_signals.h"
#include "host/settings/host_settings.h"

namespace host {

// Of the thread that records, which it never keeps waiting. Made while a StopSignals lives, so that the page's
// threads take no signal.
class RecordingPage {
 public:
    explicit RecordingPage(const HostSettings& settings);

    // Serves what the recording holds already, and then its news, on 127.0.0.1, on any free port for 0.
    // Otherwise says why not.
    std::optional<std::string> Start(int port);
    std::string Url() const { return m_server.Url(); }

    LiveRecording::Observer Observer();
    void RecordingEnded() { m_feed.SetState(RecorderState::Ended); }

 private:
    void ShowRecording();

    TrackIndex m_index;
    LiveFeed m_feed;
    PageServer m_server;
};

}  // namespace host
