// The way back: a reversed copy as a new track, or the times of this one.
#include "tests/library/library_fixture.h"

class TrackReversal : public LibraryTest {
 protected:
    TrackReversal() {
        Store("walk");
        Load();
    }

    static CTrackProxy& Walk() { return *Library().GetTrackByFile("walk"); }
    std::vector<std::string> LatitudesIn(const std::string& file) const {
        std::vector<std::string> latitudes;
        for (const TextPoint& point : PointsIn(BytesOf(PathOf(file)))) latitudes.push_back(point.lat);
        return latitudes;
    }
    void StoreVisible(int count) {
        for (int i = 0; i < count; ++i)
            Store("shown" + std::to_string(i), {.name = "Shown " + std::to_string(i), .visible = "1"});
        Load();
    }
};

TEST_F(TrackReversal, UnderANewName_IsASecondTrackTheOtherWayRound) {
    ASSERT_TRUE(Walk().ReverseTrack("Back", false, true, 0x00112233));
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"Morning ride", "Back"}));
    const StoredTrack back = Stored("Back");
    EXPECT_EQ(back.name, "Back");
    EXPECT_EQ(back.color, std::to_string(0x00112233));
    EXPECT_EQ(back.visible, "1");
    EXPECT_EQ(back.number, "3");
    EXPECT_EQ(back.segments.front(),
              (std::vector<TextPoint>{{"1.001000", "2.001000", "7.000000", "2014-05-01T11:00:00Z"},
                                      {"1.001000", "2.000000", "6.000000", "2014-05-01T10:30:00Z"},
                                      {"1.000000", "2.000000", "5.000000", "2014-05-01T10:00:00Z"}}));
}

TEST_F(TrackReversal, ReversedTrack_KeepsItsTrueStartAndEnd) {
    ASSERT_TRUE(Walk().ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(Stored("Back").startTime, "2014-05-01T10:00:00Z");
    EXPECT_EQ(Stored("Back").endTime, "2014-05-01T11:00:00Z");
}

TEST_F(TrackReversal, Original_StaysAsItIs) {
    const std::string before = BytesOf(PathOf("walk"));
    ASSERT_TRUE(Walk().ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(BytesOf(PathOf("walk")), before);
    EXPECT_FALSE(TrackProxyInside::IsLoaded(Walk()));
}

TEST_F(TrackReversal, WithoutAName_ChangesOnlyTheStoredTimes) {
    Store("walk", {.startTime = "2001-01-01T00:00:00Z", .endTime = "2002-01-01T00:00:00Z"});
    Load();
    ASSERT_TRUE(Walk().ReverseTrack(nullptr, false, false, 0x00FFFFFF));
    StoredTrack expected;  // the times are those of the points
    expected.segments = {Stored("walk").segments.front()};
    const StoredTrack stored = Stored("walk");
    EXPECT_EQ(stored.startTime, expected.startTime);
    EXPECT_EQ(stored.endTime, expected.endTime);
    EXPECT_EQ(stored.name, expected.name);
    EXPECT_EQ(stored.color, expected.color);
    EXPECT_EQ(stored.visible, expected.visible);
    EXPECT_EQ(stored.length, expected.length);
    EXPECT_EQ(LatitudesIn("walk"), (std::vector<std::string>{"1.000000", "1.001000", "1.001000"}));
    EXPECT_EQ(Library().GetCnt(), 1u);
}

TEST_F(TrackReversal, UnderItsOwnFileName_ChangesOnlyTheStoredTimes) {
    Store("walk", {.startTime = "", .endTime = ""});
    Load();
    ASSERT_TRUE(Walk().ReverseTrack("walk", true, true, 0));
    EXPECT_EQ(Stored("walk").startTime, "2014-05-01T10:00:00Z");
    EXPECT_EQ(Stored("walk").endTime, "2014-05-01T11:00:00Z");
    EXPECT_EQ(Stored("walk").color, "255");
    EXPECT_EQ(LatitudesIn("walk"), (std::vector<std::string>{"1.000000", "1.001000", "1.001000"}));
    EXPECT_EQ(Library().GetCnt(), 1u);
}

TEST_F(TrackReversal, UnderItsDisplayName_IsRefusedThoughTheFileIsWritten) {
    EXPECT_FALSE(Walk().ReverseTrack("Morning ride", false, true, 0));
    EXPECT_EQ(Library().GetCnt(), 1u);
    EXPECT_TRUE(Exists(PathOf("Morning ride")));
    EXPECT_TRUE(Exists(PathOf("walk")));
}

TEST_F(TrackReversal, OfATrackWithItsFilesName_TakesTheOriginalOut) {
    Store("walk", {.name = "walk"});
    Load();
    ASSERT_TRUE(Walk().ReverseTrack("Back", true, true, 0));
    EXPECT_EQ(DisplayNames(), std::vector<std::string>{"Back"});
    EXPECT_FALSE(Exists(PathOf("walk")));
    EXPECT_EQ(LatitudesIn("Back"), (std::vector<std::string>{"1.001000", "1.001000", "1.000000"}));
}

TEST_F(TrackReversal, DeletingTheOriginal_DeletesTheTrackThatIsCalledLikeItsFile) {
    Store("other", {.name = "walk"});
    Load();
    ASSERT_TRUE(Walk().ReverseTrack("Back", true, true, 0));
    EXPECT_FALSE(Exists(PathOf("other")));
    EXPECT_TRUE(Exists(PathOf("walk")));
    EXPECT_EQ(Library().GetTrackSel("walk"), -1);
    EXPECT_GE(Library().GetTrackSel("Morning ride"), 0);
}

TEST_F(TrackReversal, DeletingTheOriginal_FreesItsNameForTheNewTrack) {
    Store("a", {.name = "a"});
    Load();
    CTrackProxy& original = *Library().GetTrack("a");
    ASSERT_TRUE(original.ReverseTrack("A", true, true, 0));  // the device sees no difference of letter case
    EXPECT_EQ(Library().GetTrackSel("a"), -1);
    EXPECT_GE(Library().GetTrackSel("A"), 0);
    EXPECT_TRUE(Exists(PathOf("A")));
}

TEST_F(TrackReversal, WithNineShown_IsShown) {
    StoreVisible(8);
    ASSERT_EQ(Library().GetVisibleTrkCnt(), 9);
    ASSERT_TRUE(Walk().ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(Stored("Back").visible, "1");
}

TEST_F(TrackReversal, WithTenShown_IsHidden) {
    StoreVisible(9);
    ASSERT_EQ(Library().GetVisibleTrkCnt(), 10);
    ASSERT_TRUE(Walk().ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(Stored("Back").visible, "0");
    EXPECT_FALSE(Library().GetTrack("Back")->GetVisible());
}

TEST_F(TrackReversal, ShownTracks_AreCountedBeforeTheOriginalGoes) {
    Store("walk", {.name = "walk"});
    StoreVisible(9);
    ASSERT_EQ(Library().GetVisibleTrkCnt(), 10);
    ASSERT_TRUE(Walk().ReverseTrack("Back", true, true, 0));
    EXPECT_EQ(Stored("Back").visible, "0");
}

TEST_F(TrackReversal, NotToBeShown_IsHiddenThoughThereIsRoom) {
    ASSERT_TRUE(Walk().ReverseTrack("Back", false, false, 0));
    EXPECT_EQ(Stored("Back").visible, "0");
}

TEST_F(TrackReversal, WithoutRoom_FailsAndKeepsTheOriginal) {
    s_roomInDevice = false;
    EXPECT_FALSE(Walk().ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(Library().GetCnt(), 1u);
    EXPECT_TRUE(Exists(PathOf("walk")));
    EXPECT_FALSE(TrackProxyInside::IsLoaded(Walk()));
}

TEST_F(TrackReversal, UnderAnExistingDisplayName_IsRefused) {
    Store("run", {.name = "Back"});
    Load();
    EXPECT_FALSE(Walk().ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(Library().GetCnt(), 2u);
}

TEST_F(TrackReversal, OfAnUnreadableFileWithoutAName_Fails) {
    std::filesystem::remove(OnDisk(PathOf("walk")));
    EXPECT_FALSE(Walk().ReverseTrack(nullptr, false, true, 0));
    EXPECT_FALSE(Exists(PathOf("walk")));
}

// Its file name is not known, so the name of its own file is as new as any other.
TEST_F(TrackReversal, OfAnUnreadHandleUnderItsFilesName_IsANewTrackInItsPlace) {
    ASSERT_TRUE(Handle("walk")->ReverseTrack("walk", false, false, 0x00112233));
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"Morning ride", "walk"}));
    EXPECT_EQ(Stored("walk").color, std::to_string(0x00112233));
    EXPECT_EQ(LatitudesIn("walk"), (std::vector<std::string>{"1.001000", "1.001000", "1.000000"}));
}

TEST_F(TrackReversal, OfAnUnreadHandle_DeletesNothing) {
    Store("other", {.name = "walk"});
    Load();
    ASSERT_TRUE(Handle("walk")->ReverseTrack("Back", true, true, 0));
    EXPECT_EQ(DisplayNames().size(), 3u);
    EXPECT_TRUE(Exists(PathOf("walk")));
    EXPECT_TRUE(Exists(PathOf("other")));
}

// Counting the shown tracks reads the headers of those in the list, the handle's own among them.
TEST_F(TrackReversal, OfAnUnreadHandleInTheList_DeletesItWhenTheShownTracksWereCounted) {
    for (const bool isCounted : {false, true}) {
        Store("walk", {.name = "walk"});
        Restart();
        CTrackProxy* walk = TrackManInside::List(Library(), Handle("walk"));
        ASSERT_TRUE(walk->ReverseTrack("Back", true, isCounted, 0));
        EXPECT_EQ(Exists(PathOf("walk")), !isCounted);
    }
}

TEST_F(TrackReversal, Handle_HasTheReversedTracksTimes) {
    CTrackProxy& walk = Walk();
    ASSERT_TRUE(walk.ReverseTrack("Back", false, true, 0));
    EXPECT_EQ(walk.GetStartTime(), SecondsOf(2014, 5, 1, 10, 0, 0));
    EXPECT_EQ(walk.GetEndTime(), SecondsOf(2014, 5, 1, 11, 0, 0));
}
