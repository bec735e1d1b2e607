// The saved tracks as the page's server sees them.
#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "host/page/track_index.h"
#include "tests/host/track_folder.h"

namespace host {
namespace {

class TrackIndexTest : public TrackFolder {
 protected:
    static std::vector<std::string> Names(const TrackIndex& index) {
        std::vector<std::string> names;
        for (const Json& track : index.List()) names.push_back(track["name"]);
        return names;
    }
    Points LaterWay(int seconds) const {
        Points points = Way(47, 8, 10);
        for (TckPt& point : points) point.lTime += seconds;
        return points;
    }
};

TEST_F(TrackIndexTest, List_HasTheHeadersNewestFirst) {
    Store("old", Way(47, 8, 10));
    Store("new", LaterWay(1000), false);
    TrackIndex index(m_settings);
    EXPECT_TRUE(index.Refresh());
    EXPECT_EQ(Names(index), (std::vector<std::string>{"new", "old"}));
    const Json track = index.List()[1];
    EXPECT_EQ(track["id"], "old.gpx");
    EXPECT_EQ(track["point_count"], 10);
    EXPECT_EQ(track["start"], "2024-05-12T08:00:00Z");
    EXPECT_EQ(track["shown"], true);
    EXPECT_EQ(index.List()[0]["shown"], false);
}

TEST_F(TrackIndexTest, Refresh_SeesWhatAppearsChangesAndVanishes) {
    Store("one", Way(47, 8, 10));
    TrackIndex index(m_settings);
    EXPECT_TRUE(index.Refresh());
    EXPECT_FALSE(index.Refresh());
    Store("two", LaterWay(1000));
    EXPECT_TRUE(index.Refresh());
    EXPECT_EQ(Names(index), (std::vector<std::string>{"two", "one"}));
    const std::string revision = index.List()[1]["revision"];
    std::filesystem::remove(File("one.gpx"));
    Store("one", Way(47, 8, 11));
    EXPECT_TRUE(index.Refresh());
    EXPECT_NE(index.List()[1]["revision"], revision);
    std::filesystem::remove(File("two.gpx"));
    EXPECT_TRUE(index.Refresh());
    EXPECT_EQ(Names(index), std::vector<std::string>{"one"});
}

TEST_F(TrackIndexTest, Header_IsReadOnceForEachStateOfItsFile) {
    Store("one", Way(47, 8, 10));
    Store("two", Way(47, 8, 10));
    TrackIndex index(m_settings);
    for (int i = 0; i < 5; ++i) index.Refresh();
    EXPECT_EQ(index.HeadersRead(), 2u);
    std::filesystem::last_write_time(File("one.gpx"),
                                     std::filesystem::file_time_type::clock::now() + std::chrono::seconds(5));
    for (int i = 0; i < 5; ++i) index.Refresh();
    EXPECT_EQ(index.HeadersRead(), 3u);
}

TEST_F(TrackIndexTest, FilesThatAreNoTracks_AreLeftOutAndNotReadAgain) {
    Store("one", Way(47, 8, 10));
    WriteFile(File("broken.gpx"), "no document");
    WriteFile(File("note.txt"), "text");
    std::filesystem::create_directory(File("folder.gpx"));
    TrackIndex index(m_settings);
    index.Refresh();
    index.Refresh();
    EXPECT_EQ(Names(index), std::vector<std::string>{"one"});
    EXPECT_EQ(index.HeadersRead(), 2u);
    EXPECT_FALSE(index.Read("broken.gpx"));
}

TEST_F(TrackIndexTest, Read_KnowsOnlyTheTracksOfTheList) {
    Store("one", Way(47, 8, 10));
    WriteFile(m_device / "secret.gpx", ReadFile(File("one.gpx")));
    TrackIndex index(m_settings);
    index.Refresh();
    ASSERT_TRUE(index.Read("one.gpx"));
    EXPECT_EQ(index.Read("one.gpx")->drawn.points.size(), 10u);
    for (const char* id :
         {"", "one", "ONE.gpx", "../../secret.gpx", "..\\..\\secret.gpx", "/etc/passwd", "./one.gpx"})
        EXPECT_FALSE(index.Read(id)) << id;
}

// Requests of several browsers, while the folder changes.
TEST_F(TrackIndexTest, Threads_ReadSideBySide) {
    Store("one", Way(47, 8, 10));
    Store("two", Way(47, 8, 20));
    TrackIndex index(m_settings);
    index.Refresh();
    std::atomic<int> whole = 0;
    const auto readAll = [&] {
        for (int i = 0; i < 10; ++i) {
            const auto one = index.Read("one.gpx"), two = index.Read("two.gpx");
            const bool isWhole = one && two && one->drawn.points.size() == 10 && two->drawn.points.size() == 20;
            whole += isWhole && index.List().size() >= 2 ? 1 : 0;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) threads.emplace_back(readAll);
    for (int i = 0; i < 10; ++i) {
        std::filesystem::copy(File("one.gpx"), File("copy " + std::to_string(i) + ".gpx"));
        index.Refresh();
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(whole, 30);
    EXPECT_EQ(index.List().size(), 12u);
}

TEST_F(TrackIndexTest, NoFolder_IsAnEmptyList) {
    TrackIndex index(m_settings);
    EXPECT_FALSE(index.Refresh());
    EXPECT_TRUE(index.List().empty());
}

TEST_F(TrackIndexTest, Card_IsListedToo) {
    Store("one", Way(47, 8, 10));
    const std::filesystem::path card = m_device / "SDMMC" / "Track";
    std::filesystem::create_directories(card);
    std::filesystem::copy(File("one.gpx"), card / "two.gpx");
    m_settings.card = true;
    ApplySettings(m_settings);
    TrackIndex index(m_settings);
    index.Refresh();
    EXPECT_EQ(index.List().size(), 2u);
    EXPECT_TRUE(index.Read("two.gpx"));
}

}  // namespace
}  // namespace host
