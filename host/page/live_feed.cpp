#include "host/page/live_feed.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <utility>

#include "host/tracks/statistics.h"

namespace host {
namespace {

// Tells the runs of the program apart.
std::uint64_t RunNumber() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

}  // namespace

LiveFeed::LiveFeed() { m_now.run = RunNumber(); }

LivePoint LiveFeed::Located(const TckPt& point) const {
    if (!m_last) return {point, 0, false};
    const TckPt& before = m_last->point;
    double way = 0, bearing = 0;
    CalDistance(before.dLatitude, before.dLongitude, point.dLatitude, point.dLongitude, 0, &way, &bearing);
    const bool isPause = std::labs(static_cast<long>(point.lTime) - before.lTime) >= kGap;
    return {point, m_last->distance + way, isPause};
}

void LiveFeed::Publish(const TckPt& point) {
    if (!std::isfinite(point.dLatitude) || !std::isfinite(point.dLongitude)) return;
    {
        const std::lock_guard lock(m_mutex);
        m_last = Located(point);
        m_track.push_back(*m_last);
        if (m_track.size() > kMostTrackPoints) ThinTrack();
        m_recent.push_back(*m_last);
        if (m_recent.size() > kRecent) m_recent.pop_front();
        ++m_now.points;
        m_status.speed = point.dSpeed;
        m_status.length = m_last->distance;
        m_status.points = m_now.points;
        ++m_now.status;
    }
    m_news.notify_all();
}

// Leaves about half: the library's thinning with a tolerance that grows until it does.
void LiveFeed::ThinTrack() {
    CTrack track;
    for (const LivePoint& at : m_track) track.AppendPt(at.point, false);
    Points shape;
    for (int level = 0; level == 0 || (shape.size() > kMostTrackPoints / 2 && level < 24); ++level)
        track.SimplifyPt(shape, level, false);
    std::vector<LivePoint> kept;
    bool pauseBefore = false;
    for (const LivePoint& at : m_track) {
        pauseBefore = pauseBefore || at.beginsPiece;
        if (kept.size() >= shape.size() || std::memcmp(&at.point, &shape[kept.size()], sizeof at.point) != 0)
            continue;
        kept.push_back({at.point, at.distance, pauseBefore});
        pauseBefore = false;
    }
    m_track = std::move(kept);
}

void LiveFeed::SetState(RecorderState state) {
    {
        const std::lock_guard lock(m_mutex);
        m_status.state = state;
        ++m_now.status;
    }
    m_news.notify_all();
}

void LiveFeed::LibraryChanged() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_now.library;
    }
    m_news.notify_all();
}

void LiveFeed::Close() {
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    }
    m_news.notify_all();
}

bool LiveFeed::HasNews(const FeedPlace& place) const { return m_isClosed || !(place == m_now); }

FeedNews LiveFeed::NewsBehind(const FeedPlace& place) const {
    const bool isOfThisRun = place.run == m_now.run && place.points <= m_now.points;
    const std::uint64_t missed = isOfThisRun ? m_now.points - place.points : m_now.points;
    FeedNews news;
    news.place = m_now;
    news.isClosed = m_isClosed;
    news.isWholeTrack = m_status.state != RecorderState::None && (!isOfThisRun || missed > m_recent.size());
    if (news.isWholeTrack)
        news.points = m_track;
    else
        news.points.assign(
            m_recent.end() - static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(missed, m_recent.size())),
            m_recent.end());
    if (!isOfThisRun || place.status != m_now.status) news.status = m_status;
    news.libraryChanged = !isOfThisRun || place.library != m_now.library;
    return news;
}

FeedNews LiveFeed::WaitForNews(const FeedPlace& place, std::chrono::milliseconds atMost) {
    std::unique_lock lock(m_mutex);
    m_news.wait_for(lock, atMost, [&] { return HasNews(place); });
    return NewsBehind(place);
}

bool LiveFeed::IsClosedWithin(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    return m_news.wait_for(lock, time, [this] { return m_isClosed; });
}

}  // namespace host
