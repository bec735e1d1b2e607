// Serves the live page on this machine alone: the page, the list of tracks, their points, and events. It only
// reads.
//   GET /                          the page                       host/page/web_page.h
//   GET /api/tracks                {"tracks": [...]}              host/page/track_index.h
//   GET /api/tracks/<file>/points  {"statistics": ..., "points": ...}
//   GET /events                    what is new, as it comes       host/page/event_stream.h
// Its connections: host/page/closable_server.h.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "host/page/live_feed.h"
#include "host/page/track_index.h"
#include "host/page/web_page.h"

namespace host {

constexpr int kUsualPort = 8417;

// Pages of strangers cannot use it: requests that name another host, as after a change of a name's address, or
// that come from another origin, are refused. Connections and listeners are limited in number.
class PageServer {
 public:
    static constexpr int kMostConnections = 32;
    static constexpr int kMostListeners = 16;

    // `index` and `feed` must outlive it. `color`: of the recording, "#rrggbb".
    PageServer(TrackIndex& index, LiveFeed& feed, const PageOptions& options, const std::string& color);
    ~PageServer();  // closes the feed and every connection, whatever its client does
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    // Takes the port of 127.0.0.1, any for 0, and answers from then on, on threads of its own. Otherwise says
    // why not.
    std::optional<std::string> Start(int port);
    std::string Url() const;  // "http://127.0.0.1:8417/"

 private:
    struct Http;

    void Watch();

    TrackIndex& m_index;
    LiveFeed& m_feed;
    std::unique_ptr<Http> m_http;
    int m_port = 0;
    std::thread m_listening, m_watching;
};

}  // namespace host
