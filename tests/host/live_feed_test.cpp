// What live pages hear of a recording, and where they go on after they were away.
#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "host/page/event_stream.h"
#include "host/page/live_feed.h"
#include "host/text/json.h"

namespace host {
namespace {

using std::chrono::milliseconds;

TckPt Fix(int i) { return {47 + 1e-4 * i, 8 + ((i % 2) != 0 ? 1e-3 : 0), 400, 10, 1715500800 + i, 0, {}}; }

void PublishUpTo(LiveFeed& feed, int from, int end) {
    for (int i = from; i < end; ++i) feed.Publish(Fix(i));
}

std::vector<int> TimesOf(const FeedNews& news) {
    std::vector<int> times;
    for (const LivePoint& at : news.points) times.push_back(at.point.lTime - 1715500800);
    return times;
}

TEST(LiveFeed, LateListener_GetsTheTrackSoFarAndThenTheRest) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    PublishUpTo(feed, 0, 3);
    const FeedNews first = feed.WaitForNews({}, milliseconds(0));
    EXPECT_TRUE(first.isWholeTrack);
    EXPECT_EQ(TimesOf(first), (std::vector{0, 1, 2}));
    PublishUpTo(feed, 3, 5);
    const FeedNews second = feed.WaitForNews(first.place, milliseconds(0));
    EXPECT_FALSE(second.isWholeTrack);
    EXPECT_EQ(TimesOf(second), (std::vector{3, 4}));
    EXPECT_EQ(second.status->points, 5u);
    EXPECT_EQ(second.status->speed, 10);
}

TEST(LiveFeed, ListenerThatWasAway_ResumesWithoutGapOrDouble) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    PublishUpTo(feed, 0, 10);
    const FeedPlace place = PlaceOf("x");
    const FeedNews first = feed.WaitForNews(place, milliseconds(0));
    PublishUpTo(feed, 10, 10 + static_cast<int>(LiveFeed::kRecent));
    const FeedNews resumed = feed.WaitForNews(first.place, milliseconds(0));
    EXPECT_FALSE(resumed.isWholeTrack);
    ASSERT_EQ(resumed.points.size(), LiveFeed::kRecent);
    EXPECT_EQ(TimesOf(resumed).front(), 10);
}

TEST(LiveFeed, ListenerThatWasAwayForLong_BeginsAnew) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    PublishUpTo(feed, 0, 1);
    const FeedPlace place = feed.WaitForNews({}, milliseconds(0)).place;
    PublishUpTo(feed, 1, 2 + static_cast<int>(LiveFeed::kRecent));
    const FeedNews news = feed.WaitForNews(place, milliseconds(0));
    EXPECT_TRUE(news.isWholeTrack);
    EXPECT_EQ(news.points.size(), LiveFeed::kRecent + 2);
}

TEST(LiveFeed, PlaceOfAnotherRun_MeansNothing) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    PublishUpTo(feed, 0, 5);
    FeedPlace place = feed.WaitForNews({}, milliseconds(0)).place;
    --place.run;
    EXPECT_TRUE(feed.WaitForNews(place, milliseconds(0)).isWholeTrack);
}

TEST(LiveFeed, LongRecording_IsHeldThinnedWithBothEnds) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    constexpr int kPoints = 40'000;
    PublishUpTo(feed, 0, kPoints);
    const FeedNews news = feed.WaitForNews({}, milliseconds(0));
    EXPECT_LE(news.points.size(), LiveFeed::kMostTrackPoints);
    EXPECT_EQ(TimesOf(news).front(), 0);
    EXPECT_EQ(TimesOf(news).back(), kPoints - 1);
    EXPECT_EQ(news.status->points, static_cast<std::uint64_t>(kPoints));
    EXPECT_DOUBLE_EQ(news.points.back().distance, news.status->length);
}

TEST(LiveFeed, Pause_BeginsANewPiece) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    feed.Publish(Fix(0));
    feed.Publish(Fix(1800));
    const FeedNews news = feed.WaitForNews({}, milliseconds(0));
    EXPECT_FALSE(news.points[0].beginsPiece);
    EXPECT_TRUE(news.points[1].beginsPiece);
}

TEST(LiveFeed, LibraryAlone_HasNoTrack) {
    LiveFeed feed;
    const FeedNews news = feed.WaitForNews({}, milliseconds(0));
    EXPECT_FALSE(news.isWholeTrack);
    EXPECT_TRUE(news.libraryChanged);
    EXPECT_EQ(news.status->state, RecorderState::None);
    EXPECT_FALSE(feed.WaitForNews(news.place, milliseconds(1)).libraryChanged);
    feed.LibraryChanged();
    EXPECT_TRUE(feed.WaitForNews(news.place, milliseconds(0)).libraryChanged);
}

TEST(LiveFeed, ListenersOnOtherThreads_HearEveryPointInOrder) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    const FeedPlace start = feed.WaitForNews({}, milliseconds(0)).place;
    std::atomic<int> good{0};
    const auto listen = [&] {
        FeedPlace place = start;
        std::vector<int> times;
        while (times.size() < LiveFeed::kRecent) {
            const FeedNews news = feed.WaitForNews(place, std::chrono::seconds(20));
            if (news.points.empty()) return;
            const std::vector<int> more = TimesOf(news);
            times.insert(times.end(), more.begin(), more.end());
            place = news.place;
        }
        for (std::size_t i = 0; i < times.size(); ++i)
            if (times[i] != static_cast<int>(i)) return;
        ++good;
    };
    std::vector<std::thread> listeners;
    for (int i = 0; i < 4; ++i) listeners.emplace_back(listen);
    PublishUpTo(feed, 0, static_cast<int>(LiveFeed::kRecent));
    for (std::thread& listener : listeners) listener.join();
    EXPECT_EQ(good, 4);
}

TEST(LiveFeed, Close_WakesWhoWaits) {
    LiveFeed feed;
    const FeedPlace place = feed.WaitForNews({}, milliseconds(0)).place;
    std::thread closer([&] { feed.Close(); });
    EXPECT_TRUE(feed.WaitForNews(place, std::chrono::minutes(10)).isClosed);
    EXPECT_TRUE(feed.IsClosedWithin(std::chrono::minutes(10)));
    closer.join();
}

TEST(EventStream, Place_SurvivesTheWayThroughThePage) {
    LiveFeed feed;
    feed.SetState(RecorderState::Recording);
    PublishUpTo(feed, 0, 3);
    const FeedNews news = feed.WaitForNews({}, milliseconds(0));
    const std::string text = EventText(news, "#0000ff");
    const std::size_t at = text.find("id: ") + 4;
    EXPECT_EQ(PlaceOf(text.substr(at, text.find('\n', at) - at)), news.place);
    EXPECT_GT(text.find("event: track"), text.find("event: status"));
    EXPECT_GT(text.find("id: "), text.find("event: status"));  // with the points, which come last
}

TEST(EventStream, IdsThatAreNone_MeanAFreshListener) {
    for (const char* id : {"", "1", "1-2-3", "1-2-3-4-5", "1-2-3-x", "-1-2-3-4", "1--2-3-4",
                           "99999999999999999999999-1-1-1", "1-2-3-4 "})
        EXPECT_EQ(PlaceOf(id), FeedPlace{}) << id;
    EXPECT_EQ(PlaceOf("1-2-3-4"), (FeedPlace{1, 2, 3, 4}));
}

TEST(EventStream, NoNews_IsAComment) { EXPECT_TRUE(EventText(FeedNews{}, "#000000").starts_with(":")); }

}  // namespace
}  // namespace host
