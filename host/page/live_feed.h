// What a live page is told while it is open: the points of a recording as they come, how it goes, and that the
// list of tracks has changed. One thread publishes, many listen; how it goes over the wire:
// host/page/event_stream.h.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/tracks/library.h"

namespace host {

enum class RecorderState { None, Recording, Ended };  // None: only the library is shown

struct LiveStatus {
    RecorderState state = RecorderState::None;
    double speed = 0;   // [m/s]
    double length = 0;  // [m] along the recording
    std::uint64_t points = 0;
    bool operator==(const LiveStatus&) const = default;
};

// A point of the recording as a page draws it.
struct LivePoint {
    TckPt point{};
    double distance = 0;       // [m] from the recording's first point
    bool beginsPiece = false;  // after a pause
};

// Up to where a listener has heard. It comes back with it after a lost connection.
struct FeedPlace {
    std::uint64_t run = 0;                  // of the program; places of another run mean nothing
    std::uint64_t points = 0;               // published so far
    std::uint64_t status = 0, library = 0;  // how often they changed
    bool operator==(const FeedPlace&) const = default;
};

// What there is behind a place.
struct FeedNews {
    FeedPlace place;            // behind it
    bool isWholeTrack = false;  // `points` begin anew instead of continuing
    std::vector<LivePoint> points;
    std::optional<LiveStatus> status;
    bool libraryChanged = false;
    bool isClosed = false;
};

// Memory is bounded: the newest kRecent points are kept one by one for listeners who follow, and the track so
// far in at most kMostTrackPoints, thinned, for those who come late or were away for longer. Publishing never
// waits for a listener: each fetches for itself. Any thread.
class LiveFeed {
 public:
    static constexpr std::size_t kRecent = 2'000;
    static constexpr std::size_t kMostTrackPoints = 12'000;

    LiveFeed();

    void Publish(const TckPt& point);
    void SetState(RecorderState state);
    void LibraryChanged();
    void Close();  // wakes all listeners for good

    // What is new behind `place`, a fresh listener's being {}: at once if there is something, otherwise as soon
    // as there is, or with nothing after `atMost`.
    FeedNews WaitForNews(const FeedPlace& place, std::chrono::milliseconds atMost);
    // Waits that long, or until it is closed, and says whether it is.
    bool IsClosedWithin(std::chrono::milliseconds time);

 private:
    bool HasNews(const FeedPlace& place) const;
    FeedNews NewsBehind(const FeedPlace& place) const;
    LivePoint Located(const TckPt& point) const;
    void ThinTrack();

    mutable std::mutex m_mutex;
    std::condition_variable m_news;
    FeedPlace m_now;
    LiveStatus m_status;
    std::vector<LivePoint> m_track;
    std::deque<LivePoint> m_recent;
    std::optional<LivePoint> m_last;
    bool m_isClosed = false;
};

}  // namespace host
