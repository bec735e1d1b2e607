// The list of stored tracks: finding, adding, deleting, order. Names: tests/library/track_names_test.cpp.
#include "tests/library/library_fixture.h"

class TrackList : public LibraryTest {
 protected:
    void ListAll(const std::vector<std::string>& names) {
        for (const std::string& name : names) List(name);
    }
    // Three tracks on disk, listed in this order.
    void LoadThree() {
        Store("a", {.name = "First"});
        Store("b", {.name = "Second", .visible = "0"});
        Store("c", {.name = "Third"});
        SetWritten(PathOf("a"), 3000);
        SetWritten(PathOf("b"), 2000);
        SetWritten(PathOf("c"), 1000);
        Load();
    }
};

TEST_F(TrackList, ByIndex_GivesTheHandleOrNull) {
    ListAll({"A", "B"});
    EXPECT_EQ(Library().GetCnt(), 2u);
    EXPECT_EQ(Library().GetTrack(1)->GetName(), "B");
    EXPECT_EQ(Library().GetTrack(2), nullptr);
    EXPECT_EQ(Library().GetTrack(0xFFFFFFFFul), nullptr);
}

TEST_F(TrackList, ByName_IgnoresLetterCaseAndGivesTheFirst) {
    ListAll({"Other", "Track a", "TRACK A"});
    EXPECT_EQ(Library().GetTrack("TRACK A"), Library().GetTrack(1));
    EXPECT_EQ(Library().GetTrack("track A"), Library().GetTrack(1));
    EXPECT_EQ(Library().GetTrack("Track"), nullptr);
    EXPECT_EQ(Library().GetTrack("Track ab"), nullptr);
}

TEST_F(TrackList, IndexByName_HeedsLetterCase) {
    ListAll({"Other", "Track a", "Track a"});
    EXPECT_EQ(Library().GetTrackSel("Track a"), 1);
    EXPECT_EQ(Library().GetTrackSel("TRACK A"), -1);
    EXPECT_EQ(Library().GetTrackSel(""), -1);
}

TEST_F(TrackList, ByName_TakesBytesAboveAsciiAsTheyAre) {
    ListAll({"\xA8\xB9"});  // a two-byte character; its second byte with 0x20 toggled is another character's
    EXPECT_EQ(Library().GetTrack("\xA8\x99"), nullptr);
    EXPECT_NE(Library().GetTrack("\xA8\xB9"), nullptr);
}

TEST_F(TrackList, ByFileName_IgnoresLetterCase) {
    LoadThree();
    EXPECT_EQ(Library().GetTrackByFile("B"), Library().GetTrack(1));
    EXPECT_EQ(Library().GetTrackByFile("Second"), nullptr);
    EXPECT_EQ(Library().GetTrackByFile("b.gpx"), nullptr);
}

TEST_F(TrackList, VisibleTracks_AreCounted) {
    LoadThree();
    EXPECT_EQ(Library().GetVisibleTrkCnt(), 2);
    Library().GetTrack(0ul)->SetVisible(false);
    EXPECT_EQ(Library().GetVisibleTrkCnt(), 1);
}

TEST_F(TrackList, AddedHandle_IsLast) {
    ListAll({"A"});
    Store("walk");
    auto walk = Handle("walk");
    CTrackProxy* const added = walk.get();
    ASSERT_TRUE(Library().AddTrack(walk.release()));
    EXPECT_EQ(Library().GetTrack(1), added);
}

TEST_F(TrackList, HandleOfAnExistingName_IsRefusedAndStaysTheCallers) {
    ListAll({"Morning ride"});
    Store("walk");
    const auto walk = Handle("walk");
    EXPECT_FALSE(Library().AddTrack(walk.get()));
    EXPECT_EQ(Library().GetCnt(), 1u);
    EXPECT_EQ(walk->GetName(), "Morning ride");
}

TEST_F(TrackList, HandleOfANameInOtherLetterCase_IsAdded) {
    ListAll({"MORNING RIDE"});
    Store("walk");
    EXPECT_TRUE(Library().AddTrack(Handle("walk").release()));
    EXPECT_EQ(Library().GetCnt(), 2u);
}

TEST_F(TrackList, NullHandle_IsRefused) {
    EXPECT_FALSE(Library().AddTrack(static_cast<CTrackProxy*>(nullptr)));
    EXPECT_EQ(Library().GetCnt(), 0u);
}

TEST_F(TrackList, AddedTrack_IsStoredAndListed) {
    CTrack track = NewTrack("Hill");
    ASSERT_TRUE(Library().AddTrack(track));
    EXPECT_TRUE(track.IsSaveSus());
    ASSERT_EQ(Library().GetCnt(), 1u);
    EXPECT_EQ(Library().GetTrack(0ul)->GetTrackPath(), PathOf("Hill"));
    EXPECT_EQ(Library().GetTrack(0ul)->GetName(), "Hill");
    EXPECT_TRUE(Exists(PathOf("Hill")));
}

TEST_F(TrackList, AddedTrackOfAnExistingName_IsRefusedButItsFileStays) {
    ListAll({"Hill"});
    CTrack track = NewTrack("Hill");
    EXPECT_FALSE(Library().AddTrack(track));
    EXPECT_TRUE(track.IsSaveSus());
    EXPECT_EQ(Library().GetCnt(), 1u);
    EXPECT_TRUE(Exists(PathOf("Hill")));
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST_F(TrackList, AddedTrackThatCannotBeStored_IsRefused) {
    s_roomInDevice = false;
    CTrack track = NewTrack("Hill");
    EXPECT_FALSE(Library().AddTrack(track));
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_EQ(Library().GetCnt(), 0u);
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST_F(TrackList, TwentyFirstTrack_IsAdded) {
    for (int i = 0; i < 20; ++i) List(std::to_string(i));
    CTrack track = NewTrack("Hill");
    EXPECT_TRUE(Library().AddTrack(track));
    EXPECT_EQ(Library().GetCnt(), 21u);
    EXPECT_EQ(Library().GetUseable(), 0);
}

TEST_F(TrackList, DeletionByIndex_TakesFileAndHandle) {
    LoadThree();
    Library().DelTrack(1);
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"First", "Third"}));
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track"), (std::vector<std::string>{"a.gpx", "c.gpx"}));
}

TEST_F(TrackList, DeletionOutOfRange_DoesNothing) {
    LoadThree();
    Library().DelTrack(Library().GetCnt());
    Library().DelTrack(0xFFFFFFFFul);
    EXPECT_EQ(Library().GetCnt(), 3u);
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track").size(), 3u);
}

TEST_F(TrackList, DeletionByName_HeedsLetterCaseAndIgnoresFileNames) {
    LoadThree();
    Library().DelTrack(std::string("second"));
    Library().DelTrack(std::string("b"));
    EXPECT_EQ(Library().GetCnt(), 3u);
    Library().DelTrack(std::string("Second"));
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"First", "Third"}));
    EXPECT_FALSE(Exists(PathOf("b")));
}

TEST_F(TrackList, DeletionByNameOfTwo_TakesTheFirst) {
    ListAll({"A", "B", "A"});
    CTrackProxy* const last = Library().GetTrack(2);
    Library().DelTrack(std::string("A"));
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(Library().GetTrack(1), last);
}

TEST_F(TrackList, DeletionOfATrackWhoseFileIsGone_TakesTheHandle) {
    LoadThree();
    std::filesystem::remove(OnDisk(PathOf("b")));
    Library().DelTrack(1);
    EXPECT_EQ(Library().GetCnt(), 2u);
}

TEST_F(TrackList, DeletionOfAll_TakesTheListedFilesOnly) {
    LoadThree();
    Write("\\App\\UserData\\Track\\notes.txt", "kept");
    Store("later");
    Library().DelAllTrack();
    EXPECT_EQ(Library().GetCnt(), 0u);
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track"), (std::vector<std::string>{"later.gpx", "notes.txt"}));
    Library().DelAllTrack();
    EXPECT_EQ(Library().GetCnt(), 0u);
}

TEST_F(TrackList, Order_IsNewestFirst) {
    for (const auto& [name, time] : {std::pair{"old", 1000}, {"new", 3000}, {"middle", 2000}})
        List(name)->SetLstWriteTime(time);
    Library().SortTrackFile();
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"new", "middle", "old"}));
}

TEST_F(TrackList, OrderOfEqualTimes_StaysAsItWas) {
    for (int i = 0; i < 40; ++i) List(std::to_string(i))->SetLstWriteTime(i == 35 ? 2 : 1);
    Library().SortTrackFile();
    EXPECT_EQ(DisplayNames().at(0), "35");
    for (int i = 0; i < 35; ++i) EXPECT_EQ(DisplayNames()[static_cast<std::size_t>(i) + 1], std::to_string(i));
}

TEST_F(TrackList, OrderOfNothing_IsNothing) {
    Library().SortTrackFile();
    EXPECT_EQ(Library().GetCnt(), 0u);
}

TEST_F(TrackList, SavedTrack_IsFirstAfterSorting) {
    LoadThree();
    ASSERT_TRUE(Library().GetTrack(2)->SaveTrackData());
    Library().SortTrackFile();
    EXPECT_EQ(DisplayNames().at(0), "Third");
}

TEST_F(TrackList, UnusedName_IsTheLocalTime) {
    const std::string before = LocalTimeText();
    const std::string name = Library().GetUnusedName();
    EXPECT_LE(before, name);
    EXPECT_LE(name, LocalTimeText());
}
