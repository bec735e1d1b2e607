// The list is rebuilt from the media: which files are found, which enter, under which names, and where a new
// track goes.
#include "tests/library/library_fixture.h"

class StorageScan : public LibraryTest {
 protected:
    // Paths found, in order.
    static std::vector<std::string> Scan(const std::string& folder) {
        TrackManInside::RefreshStorage(Library(), folder, 256);
        std::vector<std::string> paths;
        for (const auto& [path, time] : TrackManInside::ScanRecords(Library())) paths.push_back(path);
        return paths;
    }
    void StoreOnCard(const std::string& file, const StoredTrack& track = {}) const {
        Write(OnCard(file), TextOf(track));
    }
};

TEST_F(StorageScan, Files_AreFoundInNameOrderWithTheirWholePath) {
    for (const char* file : {"b", "A", "c"}) Store(file);
    EXPECT_EQ(Scan("\\App\\UserData\\Track"),
              (std::vector<std::string>{PathOf("A"), PathOf("b"), PathOf("c")}));
}

TEST_F(StorageScan, Extension_IsMatchedInAnyLetterCaseAndWhole) {
    for (const char* file :
         {"a.gpx", "b.GPX", "c.Gpx", "d.x.gpx", "e.gpx2", "f.gp", "g.gpx.bak", "gpx", "h.xml"})
        Write(std::string("\\App\\UserData\\Track\\") + file, TextOf({}));
    const std::string folder = "\\App\\UserData\\Track\\";
    EXPECT_EQ(Scan("\\App\\UserData\\Track"), (std::vector<std::string>{folder + "a.gpx", folder + "b.GPX",
                                                                        folder + "c.Gpx", folder + "d.x.gpx"}));
}

TEST_F(StorageScan, LastWriteTime_IsUtcWithoutItsFraction) {
    Store("walk");
    SetLastWriteTime(OnDisk(PathOf("walk")), 1400000000, 999999999);
    Scan("\\App\\UserData\\Track");
    EXPECT_EQ(TrackManInside::ScanRecords(Library()).at(0).second, 1400000000);
    Load();
    EXPECT_EQ(Library().GetTrack(0ul)->GetLstWriteTime(), 1400000000);
}

TEST_F(StorageScan, FileFromBefore1970_IsOlderThanAllOthers) {
    Store("new", {.name = "New"});
    Store("old", {.name = "Old"});
    SetWritten(PathOf("new"), 1);
    SetWritten(PathOf("old"), -60);  // a clock that was never set, east of Greenwich
    Load();
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"New", "Old"}));
    EXPECT_EQ(Library().GetTrack(1)->GetLstWriteTime(), -60);
}

TEST_F(StorageScan, LastWriteTime_IsTakenBeforeTheFileIsRead) {
    std::string text = TextOf({});
    std::erase(text, '\r');  // reading gives this file its line ends, and so another time
    Write(PathOf("walk"), text);
    SetWritten(PathOf("walk"), 1000);
    Load();
    ASSERT_NE(BytesOf(PathOf("walk")), text);
    EXPECT_EQ(Library().GetTrack(0ul)->GetLstWriteTime(), 1000);
}

TEST_F(StorageScan, MissingFolder_IsAnEmptyOne) {
    std::filesystem::remove_all(OnDisk("\\App\\UserData"));
    EXPECT_TRUE(Scan("\\App\\UserData\\Track").empty());
    Load();
    EXPECT_EQ(Library().GetCnt(), 0u);
    EXPECT_FALSE(Exists("\\App\\UserData"));
}

TEST_F(StorageScan, DefaultFolder_FindsNothing) {
    Write("\\walk.gpx", TextOf({}));
    EXPECT_TRUE(Scan("\\").empty());
}

TEST_F(StorageScan, FolderNamedLikeATrack_IsFoundAndDoesNotEnter) {
    std::filesystem::create_directories(OnDisk(PathOf("folder")));
    Store("walk");
    EXPECT_EQ(Scan("\\App\\UserData\\Track").size(), 2u);
    Load();
    EXPECT_EQ(DisplayNames(), std::vector<std::string>{"Morning ride"});
}

TEST_F(StorageScan, PathTooLongToBeKept_DoesNotEnter) {
    const std::string longest(256 - std::string("\\App\\UserData\\Track\\.gpx").size(), 'n');
    Store(longest);
    Store(longest + "n");
    Load();
    ASSERT_EQ(Library().GetCnt(), 1u);
    EXPECT_EQ(Library().GetTrack(0ul)->GetTrkFileName(), longest);
}

TEST_F(StorageScan, UnreadableFiles_DoNotEnter) {
    Store("walk");
    Write(PathOf("empty"), "");
    Write(PathOf("broken"), "<gpx><trk>");
    Write(PathOf("other"), "<html></html>");
    Store("pointless", {.segments = {{}}});
    Load();
    EXPECT_EQ(DisplayNames(), std::vector<std::string>{"Morning ride"});
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track").size(), 5u);
}

TEST_F(StorageScan, Card_IsScannedOnlyWhenItIsPresent) {
    InsertCard();
    Store("device", {.name = "Device"});
    StoreOnCard("card", {.name = "Card"});
    Settings().SetbHasSdCard(false);
    Load();
    EXPECT_EQ(DisplayNames(), std::vector<std::string>{"Device"});
    Settings().SetbHasSdCard(true);
    Load();
    EXPECT_EQ(Library().GetCnt(), 2u);
}

TEST_F(StorageScan, Device_IsScannedBeforeTheCard) {
    InsertCard();
    Store("z");
    StoreOnCard("a");
    Library().RefreshFilelist();
    const auto records = TrackManInside::ScanRecords(Library());
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].first, PathOf("z"));
    EXPECT_EQ(records[1].first, OnCard("a"));
}

TEST_F(StorageScan, List_IsNewestFirstAcrossTheMedia) {
    InsertCard();
    Store("old", {.name = "Old"});
    StoreOnCard("new", {.name = "New"});
    Store("middle", {.name = "Middle"});
    SetWritten(PathOf("old"), 1000);
    SetWritten(OnCard("new"), 3000);
    SetWritten(PathOf("middle"), 2000);
    Load();
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"New", "Middle", "Old"}));
}

TEST_F(StorageScan, Rebuilding_TakesTheListFromTheMediaAndLeavesTheFiles) {
    Store("walk");
    Load();
    Library().GetTrack(0ul)->SetName("In memory");
    Store("run", {.name = "Run"});
    Library().RefreshFilelist();
    EXPECT_EQ(Library().GetCnt(), 2u);
    EXPECT_NE(Library().GetTrack("Morning ride"), nullptr);
    EXPECT_EQ(Library().GetTrack("In memory"), nullptr);
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track").size(), 2u);
}

// Reading a document may repair its line ends; that is no new writing.
TEST_F(StorageScan, SecondScan_FindsTheOrderOfTheFirst) {
    Store("a", {.name = "Oldest"});
    Store("b", {.name = "Newest"});
    Store("c", {.name = "Between"});
    SetWritten(PathOf("a"), 1000);
    SetWritten(PathOf("b"), 3000);
    SetWritten(PathOf("c"), 2000);
    Load();
    Library().RefreshFilelist();
    ASSERT_EQ(Library().GetCnt(), 3u);
    EXPECT_EQ(Library().GetTrack(0ul)->GetName(), "Newest");
    EXPECT_EQ(Library().GetTrack(1)->GetName(), "Between");
    EXPECT_EQ(Library().GetTrack(2)->GetName(), "Oldest");
}

TEST_F(StorageScan, LoadedTracks_HaveTheirHeadersAndNoPoints) {
    Store("walk");
    Load();
    CTrackProxy& walk = *Library().GetTrack(0ul);
    EXPECT_EQ(TrackProxyInside::PointCount(walk), 3u);
    EXPECT_EQ(TrackProxyInside::FileName(walk), "walk");
    EXPECT_FALSE(TrackProxyInside::IsLoaded(walk));
    EXPECT_EQ(walk.GetColor(), 255u);
}

TEST_F(StorageScan, CharactersThatNoFileNameMayHold_BecomeUnderscores) {
    Store("walk", {.name = "a:b"});
    Store("run", {.name = "\\/:*?&quot;&lt;&gt;|x"});
    Load();
    EXPECT_NE(Library().GetTrack("a_b"), nullptr);
    EXPECT_NE(Library().GetTrack("_________x"), nullptr);
    EXPECT_EQ(Stored("walk").name, "a:b");
}

TEST_F(StorageScan, SecondByteOfACharacter_IsNoInvalidCharacter) {
    Store("walk", {.name = "\u4E57\u4E85:\u5317"});  // in the code page 81 5C, 81 7C, a colon, B1 B1
    Load();
    EXPECT_EQ(DisplayNames(), std::vector<std::string>{"\x81\x5C\x81\x7C_\xB1\xB1"});
}

TEST_F(StorageScan, NamesMadeEqualByUnderscores_AreMadeUnique) {
    Store("1", {.name = "a:b"});
    Store("2", {.name = "a?b"});
    Load();
    EXPECT_NE(Library().GetTrack("a_b"), nullptr);
    EXPECT_NE(Library().GetTrack("a_b_1"), nullptr);
}

TEST_F(StorageScan, TwelveVisibleTracks_LoadAsTenShownAndTwoHidden) {
    for (char file = 'a'; file < 'a' + 12; ++file)
        Store(std::string(1, file), {.name = std::string("T ") + file});
    Load();
    EXPECT_EQ(Library().GetCnt(), 12u);
    EXPECT_EQ(Library().GetVisibleTrkCnt(), 10);
    EXPECT_EQ(Stored("l").visible, "1");  // in memory only
}

TEST_F(StorageScan, TracksToBeHidden_AreTheLastFoundNotTheOldest) {
    for (char file = 'a'; file < 'a' + 12; ++file) {
        const std::string name(1, file);
        Store(name, {.name = name});
        SetWritten(PathOf(name), 1000 + file);  // so the last found are the newest
    }
    Load();
    EXPECT_EQ(DisplayNames().at(0), "l");
    EXPECT_FALSE(Library().GetTrack("l")->GetVisible());
    EXPECT_FALSE(Library().GetTrack("k")->GetVisible());
    EXPECT_TRUE(Library().GetTrack("a")->GetVisible());
}

TEST_F(StorageScan, HiddenTracks_DoNotCountAgainstTheTen) {
    for (char file = 'a'; file < 'a' + 20; ++file)
        Store(std::string(1, file), {.name = std::string("T ") + file, .visible = file % 2 == 0 ? "1" : "0"});
    Load();
    EXPECT_EQ(Library().GetVisibleTrkCnt(), 10);
}

TEST_F(StorageScan, RecordOfAFileThatIsGone_DoesNotEnter) {
    Store("walk");
    TrackManInside::AddScanRecord(Library(), PathOf("gone"), 1000);
    TrackManInside::AddScanRecord(Library(), PathOf("walk"), 2000);
    TrackManInside::LoadTrack(Library());
    ASSERT_EQ(Library().GetCnt(), 1u);
    EXPECT_EQ(Library().GetTrack(0ul)->GetLstWriteTime(), 2000);
}

// --- Where a new track goes ---

namespace {

constexpr char kCard[] = "card", kDevice[] = "device", kNowhere[] = "nowhere";

struct PlaceCase {
    EnumStoreTrack place;
    bool hasCard, roomOnCard, roomInDevice;
    const char* expected;
};

}  // namespace

class StoragePlace : public LibraryTest, public ::testing::WithParamInterface<PlaceCase> {};

TEST_P(StoragePlace, OfANewTrack_FollowsSettingCardAndRoom) {
    const PlaceCase& given = GetParam();
    Settings().SetStoreTrkPlace(given.place);
    Settings().SetbHasSdCard(given.hasCard);
    s_roomOnCard = given.roomOnCard;
    s_roomInDevice = given.roomInDevice;
    for (const bool before : {false, true}) {
        bool onCard = before;
        const bool found = Library().GetStoragePlace(onCard);
        EXPECT_STREQ(!found ? kNowhere : onCard ? kCard : kDevice, given.expected);
        EXPECT_TRUE(found || onCard == before);
    }
}

INSTANTIATE_TEST_SUITE_P(AllCases, StoragePlace,
                         ::testing::Values(PlaceCase{StoreTrkDevice, true, true, true, kDevice},
                                           PlaceCase{StoreTrkDevice, true, true, false, kNowhere},
                                           PlaceCase{StoreTrkDevice, false, true, true, kDevice},
                                           PlaceCase{StoreTrkDevice, false, true, false, kNowhere},
                                           PlaceCase{StoreTrkDevice, true, false, true, kDevice},
                                           PlaceCase{StoreTrkDevice, true, false, false, kNowhere},
                                           PlaceCase{StoreTrkSdCard, true, true, true, kCard},
                                           PlaceCase{StoreTrkSdCard, true, true, false, kCard},
                                           PlaceCase{StoreTrkSdCard, true, false, true, kNowhere},
                                           PlaceCase{StoreTrkSdCard, false, true, true, kNowhere},
                                           PlaceCase{StoreTrkSdCard, false, false, false, kNowhere},
                                           PlaceCase{StoreTrkAuto, true, true, true, kCard},
                                           PlaceCase{StoreTrkAuto, true, true, false, kCard},
                                           PlaceCase{StoreTrkAuto, true, false, true, kDevice},
                                           PlaceCase{StoreTrkAuto, true, false, false, kNowhere},
                                           PlaceCase{StoreTrkAuto, false, true, true, kDevice},
                                           PlaceCase{StoreTrkAuto, false, true, false, kNowhere}));

TEST_F(StorageScan, WithoutASpaceCallback_ThereIsNoPlace) {
    InsertCard();
    Library().SetIsHasEnoughSpaceCallFun(nullptr);
    bool onCard = false;
    for (const EnumStoreTrack place : {StoreTrkDevice, StoreTrkSdCard, StoreTrkAuto}) {
        Settings().SetStoreTrkPlace(place);
        EXPECT_FALSE(Library().GetStoragePlace(onCard));
    }
}
