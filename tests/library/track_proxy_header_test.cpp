// What a handle knows without the points: read from the document's header when first asked for, and kept.
#include "tests/library/library_fixture.h"

using TrackHeader = LibraryTest;

TEST_F(TrackHeader, OfAStoredTrack_IsReadFromItsDocument) {
    Store("walk");
    const auto walk = Handle("walk");
    EXPECT_EQ(walk->GetPtCount(), 3u);
    EXPECT_EQ(walk->GetStartTime(), SecondsOf(2014, 5, 1, 10, 0, 0));
    EXPECT_EQ(walk->GetEndTime(), SecondsOf(2014, 5, 1, 11, 0, 0));
    EXPECT_EQ(walk->GetLength(), 1234.5);
    EXPECT_EQ(walk->GetArea(), 77.25);
    EXPECT_EQ(walk->GetName(), "Morning ride");
    EXPECT_EQ(walk->GetTrkFileName(), "walk");
    EXPECT_EQ(walk->GetColor(), 255u);
    EXPECT_TRUE(walk->GetVisible());
}

TEST_F(TrackHeader, PointCount_IsTheStatedNumberNotTheNumberOfPoints) {
    Store("walk", {.number = "17"});
    EXPECT_EQ(Handle("walk")->GetPtCount(), 17u);
}

TEST_F(TrackHeader, NegativeArea_IsKeptAsItsMagnitude) {
    Store("walk", {.area = "-12.500000"});
    EXPECT_EQ(Handle("walk")->GetArea(), 12.5);
}

TEST_F(TrackHeader, ColorAbove31Bits_IsNotSignExtended) {
    Store("walk", {.color = "-16776961"});
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    EXPECT_EQ(walk->GetColor(), 0xFF0000FFul);
}

TEST_F(TrackHeader, OfAFileWithoutOurElements_IsZeroAndHidden) {
    Store("walk",
          {.number = "", .color = "", .visible = "", .length = "", .area = "", .startTime = "", .endTime = ""});
    const auto walk = Handle("walk");
    EXPECT_TRUE(walk->Load(nullptr));
    EXPECT_FALSE(walk->GetVisible());
    EXPECT_EQ(walk->GetColor(), 0u);
    EXPECT_EQ(walk->GetPtCount(), 0u);
    EXPECT_EQ(walk->GetStartTime(), 0);
}

TEST_F(TrackHeader, EmptyTrackName_ShowsTheFileName) {
    Store("walk.home", {.name = ""});
    const auto walk = Handle("walk.home");
    EXPECT_EQ(walk->GetName(), "walk.home");
    EXPECT_EQ(walk->GetTrkFileName(), "walk.home");
}

TEST_F(TrackHeader, Reading_LoadsNoPointsAndLeavesTheFileAlone) {
    Store("walk");
    const std::string before = BytesOf(PathOf("walk"));
    const auto walk = Handle("walk");
    walk->GetName();
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    EXPECT_EQ(TrackProxyInside::OwnPoints(*walk), 0u);
    EXPECT_EQ(BytesOf(PathOf("walk")), before);
}

TEST_F(TrackHeader, KnownValues_AreNotReadAgain) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->GetPtCount();
    Store("walk", {.name = "Other", .number = "9", .length = "1.000000"});
    EXPECT_EQ(walk->GetPtCount(), 3u);
    EXPECT_EQ(walk->GetLength(), 1234.5);
    EXPECT_EQ(walk->GetName(), "Morning ride");
}

TEST_F(TrackHeader, ZeroPointCount_IsReadAgainAtEveryQuery) {
    Store("walk", {.number = "0"});
    const auto walk = Handle("walk");
    EXPECT_EQ(walk->GetPtCount(), 0u);
    Store("walk", {.number = "4"});
    EXPECT_EQ(walk->GetPtCount(), 4u);
}

TEST_F(TrackHeader, ZeroTimesLengthAndArea_AreReadAgainAtEveryQuery) {
    const StoredTrack bare{.length = "", .area = "", .startTime = "", .endTime = ""};
    const auto readAgain = [&](auto query, const StoredTrack& later) {
        Store("walk", bare);
        const auto walk = Handle("walk");
        EXPECT_EQ(query(*walk), 0);
        Store("walk", later);
        return query(*walk);
    };
    EXPECT_EQ(readAgain([](CTrackProxy& walk) { return walk.GetLength(); }, {}), 1234.5);
    EXPECT_EQ(readAgain([](CTrackProxy& walk) { return walk.GetArea(); }, {}), 77.25);
    EXPECT_EQ(readAgain([](CTrackProxy& walk) { return walk.GetStartTime(); }, {}),
              SecondsOf(2014, 5, 1, 10, 0, 0));
    EXPECT_EQ(readAgain([](CTrackProxy& walk) { return walk.GetEndTime(); }, {}),
              SecondsOf(2014, 5, 1, 11, 0, 0));
}

TEST_F(TrackHeader, Color_IsNeverReadWhenAskedFor) {
    Store("walk");
    const auto walk = Handle("walk");
    EXPECT_EQ(walk->GetColor(), 0u);
    EXPECT_EQ(TrackProxyInside::Visibility(*walk), -1);
}

TEST_F(TrackHeader, Visibility_IsReadOnce) {
    Store("walk", {.visible = "0"});
    const auto walk = Handle("walk");
    EXPECT_FALSE(walk->GetVisible());
    Store("walk", {.visible = "1"});
    EXPECT_FALSE(walk->GetVisible());
}

TEST_F(TrackHeader, VisibilitySetBefore_IsNotRead) {
    Store("walk", {.visible = "1"});
    const auto walk = Handle("walk");
    walk->SetVisible(false);
    EXPECT_FALSE(walk->GetVisible());
    EXPECT_EQ(TrackProxyInside::DisplayName(*walk), "");
}

TEST_F(TrackHeader, VisibleAboveOne_IsShown) {
    Store("walk", {.visible = "7"});
    EXPECT_TRUE(Handle("walk")->GetVisible());
}

TEST_F(TrackHeader, OfAnUnreadableFile_StaysUnknownAndShown) {
    Write(PathOf("broken"), "<gpx><trk>");
    const auto broken = Handle("broken");
    EXPECT_FALSE(broken->Load(nullptr));
    EXPECT_TRUE(broken->GetVisible());
    EXPECT_EQ(broken->GetPtCount(), 0u);
    EXPECT_EQ(broken->GetName(), "");
    EXPECT_EQ(broken->GetTrkFileName(), "");
}

TEST_F(TrackHeader, FailedReading_LeavesTheValuesAsTheyWere) {
    Store("walk");
    const auto walk = Handle("walk");
    EXPECT_TRUE(walk->Load(nullptr));
    std::filesystem::remove(OnDisk(PathOf("walk")));
    EXPECT_FALSE(walk->Load(nullptr));
    EXPECT_EQ(walk->GetPtCount(), 3u);
    EXPECT_EQ(walk->GetName(), "Morning ride");
    EXPECT_EQ(walk->GetColor(), 255u);
}

TEST_F(TrackHeader, OfADocumentWithoutPoints_CannotBeRead) {
    Store("empty", {.segments = {{}}});
    EXPECT_FALSE(Handle("empty")->Load(nullptr));
}

TEST_F(TrackHeader, Load_ReplacesWhatWasSetInMemory) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->SetName("Mine");
    walk->SetColor(1);
    walk->SetVisible(false);
    EXPECT_TRUE(walk->Load(nullptr));
    EXPECT_EQ(walk->GetName(), "Morning ride");
    EXPECT_EQ(walk->GetColor(), 255u);
    EXPECT_TRUE(walk->GetVisible());
}

TEST_F(TrackHeader, SettersOfNameColorAndVisibility_WriteNothing) {
    Store("walk");
    const std::string before = BytesOf(PathOf("walk"));
    const auto walk = Handle("walk");
    walk->SetName("Mine");
    walk->SetColor(0x00ABCDEF);
    walk->SetVisible(false);
    EXPECT_EQ(walk->GetName(), "Mine");
    EXPECT_EQ(walk->GetColor(), 0x00ABCDEFu);
    EXPECT_FALSE(walk->GetVisible());
    EXPECT_EQ(BytesOf(PathOf("walk")), before);
}

TEST_F(TrackHeader, LongNameSet_IsCutTo32Bytes) {
    CTrackProxy proxy;
    proxy.SetName(std::string(40, 'n').c_str());
    EXPECT_EQ(proxy.GetName(), std::string(32, 'n'));
}

TEST_F(TrackHeader, NameWhileATrackIsLoaded_IsTheLoadedTracksFileName) {
    Store("walk");
    const auto walk = Handle("walk");
    TrackProxyInside::GetTrack(*walk);
    EXPECT_EQ(walk->GetName(), "walk");
    EXPECT_EQ(walk->GetTrkFileName(), "walk");
}

TEST_F(TrackHeader, PathOnly_IsKeptAsGiven) {
    CTrackProxy proxy;
    EXPECT_STREQ(proxy.GetTrackPath(), "");
    Store("walk");
    proxy.SetTrackPath(PathOf("walk"));
    EXPECT_EQ(proxy.GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(TrackProxyInside::FileName(proxy), "");
    EXPECT_EQ(proxy.GetTrkFileName(), "walk");
}

TEST_F(TrackHeader, NewPath_GivesItsFileNameWhenItIsRead) {
    Store("walk");
    Store("run");
    const auto track = Handle("walk");
    track->Load(nullptr);
    track->SetTrackPath(PathOf("run"));
    EXPECT_EQ(track->GetTrkFileName(), "walk");
    track->Load(nullptr);
    EXPECT_EQ(track->GetTrkFileName(), "run");
}

TEST_F(TrackHeader, OfAHandleWithoutFile_IsEmpty) {
    CTrackProxy proxy;
    EXPECT_EQ(proxy.GetName(), "");
    EXPECT_EQ(proxy.GetTrkFileName(), "");
    EXPECT_EQ(proxy.GetPtCount(), 0u);
    EXPECT_TRUE(proxy.GetVisible());
    EXPECT_EQ(proxy.GetID(), 0u);
    EXPECT_FALSE(proxy.Load(nullptr));
}

TEST_F(TrackHeader, Init_ForgetsHeaderAndFileName) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    walk->SetID(7);
    walk->SetLstWriteTime(1000);
    walk->Init();
    EXPECT_EQ(TrackProxyInside::FileName(*walk), "");
    EXPECT_EQ(TrackProxyInside::Visibility(*walk), -1);
    EXPECT_EQ(TrackProxyInside::PointCount(*walk), 0u);
    EXPECT_EQ(walk->GetColor(), 0u);
    EXPECT_EQ(walk->GetID(), 0u);
    EXPECT_EQ(walk->GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(TrackProxyInside::DisplayName(*walk), "Morning ride");
    EXPECT_EQ(walk->GetLstWriteTime(), 1000);
}

TEST_F(TrackHeader, Init_KeepsALoadedTrack) {
    Store("walk");
    const auto walk = Handle("walk");
    CTrack* loaded = TrackProxyInside::GetTrack(*walk);
    walk->Init();
    EXPECT_EQ(TrackProxyInside::LoadedTrack(*walk), loaded);
}

TEST_F(TrackHeader, SaveToAStream_DoesNothing) {
    Store("walk");
    const std::string before = BytesOf(PathOf("walk"));
    EXPECT_TRUE(Handle("walk")->Save(static_cast<void*>(nullptr)));
    EXPECT_EQ(BytesOf(PathOf("walk")), before);
}

TEST_F(TrackHeader, MagicTextOfTheRecordStream_IsKnown) {
    EXPECT_EQ(CTrackProxy::g_strTrackFlag, "Qarvolent Trace H1.0");
}
