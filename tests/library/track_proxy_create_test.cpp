// A track in memory becomes a stored one through a new handle; handles are copied and assigned.
#include <cmath>

#include "tests/library/library_fixture.h"

using TrackCreation = LibraryTest;

TEST_F(TrackCreation, SavedTrack_IsAFileOfItsNameInTheFolderOfSavedTracks) {
    CTrack track = NewTrack("Hill");
    CTrackProxy hill(track, true);
    EXPECT_TRUE(track.IsSaveSus());
    EXPECT_EQ(hill.GetTrackPath(), PathOf("Hill"));
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track"), std::vector<std::string>{"Hill.gpx"});
    EXPECT_EQ(Stored("Hill").segments.front(),
              (std::vector<TextPoint>{{"0.000000", "0.000000", "", "1970-01-01T00:16:40Z"},
                                      {"0.001000", "0.000000", "", "1970-01-01T00:16:50Z"},
                                      {"0.001000", "0.001000", "", "1970-01-01T00:17:00Z"}}));
}

TEST_F(TrackCreation, AutoSavedTrack_GoesToTheAutoSaveFolder) {
    CTrack track = NewTrack("Hill");
    CTrackProxy hill(track, false);
    EXPECT_STREQ(hill.GetTrackPath(), "\\App\\UserData\\AutoSave\\Hill.gpx");
    EXPECT_TRUE(Exists("\\App\\UserData\\AutoSave\\Hill.gpx"));
}

TEST_F(TrackCreation, WithACard_GoesToTheCard) {
    InsertCard();
    CTrack track = NewTrack("Hill");
    EXPECT_EQ(CTrackProxy(track, true).GetTrackPath(), OnCard("Hill"));
    EXPECT_TRUE(Exists(OnCard("Hill")));
    EXPECT_STREQ(CTrackProxy(track, false).GetTrackPath(), "\\SDMMC\\UserData\\AutoSave\\Hill.gpx");
}

TEST_F(TrackCreation, Handle_TakesOverTheTracksStatistics) {
    CTrack track = NewTrack("Hill");
    track.SetColor(0x00123456);
    track.SetVisible(false);
    const CTrackProxy before;
    const long now = static_cast<long>(Now());
    CTrackProxy hill(track, true);
    std::filesystem::remove(OnDisk(PathOf("Hill")));  // so that nothing can be read
    EXPECT_EQ(hill.GetTrkFileName(), "Hill");
    EXPECT_EQ(hill.GetPtCount(), 3u);
    EXPECT_EQ(hill.GetStartTime(), 1000);
    EXPECT_EQ(hill.GetEndTime(), 1020);
    EXPECT_NEAR(hill.GetLength(), 2 * 111.12, 0.001);
    EXPECT_NEAR(hill.GetArea(), 12392.029030466 / 2, 0.001);
    EXPECT_EQ(hill.GetColor(), 0x00123456u);
    EXPECT_FALSE(hill.GetVisible());
    EXPECT_EQ(hill.GetID(), 0u);
    EXPECT_GE(hill.GetLstWriteTime(), now);
    EXPECT_LE(hill.GetLstWriteTime(), static_cast<long>(Now()));
}

TEST_F(TrackCreation, AreaOfEitherSense_IsPositive) {
    for (const bool reversed : {false, true}) {
        CTrack track = NewTrack("Hill");
        if (reversed) track.Reverse();
        CTrackProxy hill(track, true);
        EXPECT_GT(hill.GetArea(), 0.0);
        EXPECT_GT(std::stod(Stored("Hill").area), 0.0);
    }
}

TEST_F(TrackCreation, StatisticsInTheDocument_AreComputed) {
    CTrack track = NewTrack("Hill");
    const CTrackProxy hill(track, true);
    const StoredTrack stored = Stored("Hill");
    EXPECT_EQ(stored.name, "Hill");
    EXPECT_EQ(stored.number, "3");
    EXPECT_NEAR(std::stod(stored.length), 2 * 111.12, 0.001);
    EXPECT_NEAR(std::stod(stored.area), 12392.029030466 / 2, 0.001);
    EXPECT_EQ(stored.startTime, "1970-01-01T00:16:40Z");
    EXPECT_EQ(stored.endTime, "1970-01-01T00:17:00Z");
}

TEST_F(TrackCreation, DisplayName_IsReadFromTheFileWhenAskedFor) {
    CTrack track = NewTrack("Hill");
    CTrackProxy hill(track, true);
    EXPECT_EQ(TrackProxyInside::DisplayName(hill), "");
    EXPECT_EQ(hill.GetName(), "Hill");
}

TEST_F(TrackCreation, Track_StaysTheCallers) {
    CTrack track = NewTrack("Hill");
    {
        CTrackProxy hill(track, true);
        EXPECT_FALSE(TrackProxyInside::IsLoaded(hill));
        Points points;
        hill.GetPtList(points);
    }
    EXPECT_EQ(track.GetPtCount(), 3u);
    EXPECT_EQ(track.GetName(), "Hill");
}

TEST_F(TrackCreation, WithoutAName_Fails) {
    CTrack track = NewTrack("");
    track.SetIsSaveSus(true);
    const CTrackProxy nameless(track, true);
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_TRUE(FilesIn("\\App\\UserData\\Track").empty());
}

TEST_F(TrackCreation, WithoutAStoragePlace_Fails) {
    s_roomInDevice = false;
    CTrack track = NewTrack("Hill");
    track.SetIsSaveSus(true);
    { CTrackProxy hill(track, true); }
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_FALSE(Exists(PathOf("Hill")));
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST_F(TrackCreation, ThatFails_LeavesTheHandleAsANewOne) {
    s_roomInDevice = false;
    CTrack track = NewTrack("Nowhere");
    CTrackProxy proxy(track, true);
    EXPECT_STREQ(proxy.GetTrackPath(), "");
    EXPECT_EQ(TrackProxyInside::FileName(proxy), "");
    EXPECT_EQ(TrackProxyInside::PointCount(proxy), 0u);
    EXPECT_EQ(TrackProxyInside::Visibility(proxy), -1);
    EXPECT_EQ(proxy.GetLstWriteTime(), 0);
}

TEST_F(TrackCreation, MissingFolders_AreMade) {
    std::filesystem::remove_all(OnDisk("\\App\\UserData"));
    CTrack track = NewTrack("Hill");
    const CTrackProxy hill(track, true);
    EXPECT_TRUE(track.IsSaveSus());
    EXPECT_TRUE(Exists(PathOf("Hill")));
}

TEST_F(TrackCreation, MissingParentOfTheUserData_Fails) {
    std::filesystem::remove_all(OnDisk("\\App"));
    CTrack track = NewTrack("Hill");
    { CTrackProxy hill(track, true); }
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_FALSE(Exists("\\App"));
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST_F(TrackCreation, FileInTheWayOfTheUserDataFolder_Fails) {
    std::filesystem::remove_all(OnDisk("\\App\\UserData"));
    Write("\\App\\UserData", "a file");
    CTrack track = NewTrack("Hill");
    { CTrackProxy hill(track, true); }
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST_F(TrackCreation, FileInTheWayOfTheTrackFolder_Fails) {
    std::filesystem::remove_all(OnDisk("\\App\\UserData\\Track"));
    Write("\\App\\UserData\\Track", "a file");
    CTrack track = NewTrack("Hill");
    { CTrackProxy hill(track, true); }
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_EQ(BytesOf("\\App\\UserData\\Track"), "a file");
}

TEST_F(TrackCreation, PathThatCannotBeOpened_StillCountsAsSaved) {
    std::filesystem::create_directories(OnDisk(PathOf("Hill")));
    CTrack track = NewTrack("Hill");
    {
        CTrackProxy hill(track, true);
        EXPECT_EQ(hill.GetTrackPath(), PathOf("Hill"));
        EXPECT_EQ(hill.GetPtCount(), 3u);
    }
    EXPECT_TRUE(track.IsSaveSus());
    EXPECT_TRUE(std::filesystem::is_directory(OnDisk(PathOf("Hill"))));
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST_F(TrackCreation, NameOf200Characters_IsTheFilesName) {
    const std::string name(200, 'n');
    CTrack track = NewTrack(name);
    CTrackProxy hill(track, true);
    EXPECT_TRUE(Exists(PathOf(name)));
    EXPECT_EQ(hill.GetTrkFileName(), name);
    EXPECT_EQ(Stored(name).name, std::string(32, 'n'));
}

TEST_F(TrackCreation, NameTooLongForAPath_DoesNoHarm) {
    CTrack track = NewTrack(std::string(300, 'n'));
    { CTrackProxy hill(track, true); }
    EXPECT_EQ(track.GetPtCount(), 3u);
    EXPECT_TRUE(FilesIn("\\App\\UserData\\Track").empty());
}

// --- Copies ---

TEST_F(TrackCreation, Copy_IsTheSameHandle) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    walk->SetID(5);
    walk->SetLstWriteTime(1000);
    walk->SetVisible(false);
    CTrackProxy copy(*walk);
    std::filesystem::remove(OnDisk(PathOf("walk")));
    EXPECT_EQ(copy.GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(copy.GetName(), "Morning ride");
    EXPECT_EQ(copy.GetTrkFileName(), "walk");
    EXPECT_EQ(copy.GetPtCount(), 3u);
    EXPECT_EQ(copy.GetLength(), 1234.5);
    EXPECT_EQ(copy.GetArea(), 77.25);
    EXPECT_EQ(copy.GetStartTime(), SecondsOf(2014, 5, 1, 10, 0, 0));
    EXPECT_EQ(copy.GetEndTime(), SecondsOf(2014, 5, 1, 11, 0, 0));
    EXPECT_EQ(copy.GetColor(), 255u);
    EXPECT_FALSE(copy.GetVisible());
    EXPECT_EQ(copy.GetID(), 5u);
    EXPECT_EQ(copy.GetLstWriteTime(), 1000);
}

TEST_F(TrackCreation, CopyOfAnUnreadHandle_IsUnread) {
    Store("walk");
    const auto walk = Handle("walk");
    const CTrackProxy copy(*walk);
    EXPECT_EQ(TrackProxyInside::Visibility(copy), -1);
    EXPECT_EQ(TrackProxyInside::PointCount(copy), 0u);
}

TEST_F(TrackCreation, Assignment_MakesTheDisplayNameTheFileName) {
    Store("walk");
    const auto walk = Handle("walk");
    CTrackProxy target;
    target = *walk;
    EXPECT_EQ(target.GetTrkFileName(), "Morning ride");
    EXPECT_STREQ(target.GetTrackPath(), "\\App\\Track\\Morning ride.gpx");
}

TEST_F(TrackCreation, Assignment_TakesTheHeaderThoughItHasToBeRead) {
    Store("walk", {.visible = "0"});
    CTrackProxy target;
    target = *Handle("walk");
    EXPECT_EQ(TrackProxyInside::PointCount(target), 3u);
    EXPECT_EQ(target.GetLength(), 1234.5);
    EXPECT_EQ(target.GetArea(), 77.25);
    EXPECT_EQ(target.GetStartTime(), SecondsOf(2014, 5, 1, 10, 0, 0));
    EXPECT_EQ(target.GetEndTime(), SecondsOf(2014, 5, 1, 11, 0, 0));
    EXPECT_EQ(target.GetColor(), 255u);
    EXPECT_EQ(TrackProxyInside::Visibility(target), 0);
}

TEST_F(TrackCreation, Assignment_KeepsDisplayNameAndWriteTimeAndClearsTheIdentifier) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->SetID(5);
    walk->SetLstWriteTime(2000);
    CTrackProxy target;
    target.SetName("Mine");
    target.SetID(3);
    target.SetLstWriteTime(1000);
    target = *walk;
    EXPECT_EQ(target.GetName(), "Mine");
    EXPECT_EQ(target.GetLstWriteTime(), 1000);
    EXPECT_EQ(target.GetID(), 0u);
}

TEST_F(TrackCreation, Assignment_LetsALoadedTrackGoWithoutFreeingIt) {
    Store("walk");
    Store("run");
    const auto run = Handle("run");
    const CTrack* loaded = TrackProxyInside::GetTrack(*run);
    *run = *Handle("walk");
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*run));
    EXPECT_EQ(loaded->GetPtList().size(), 3u);  // still there
}
