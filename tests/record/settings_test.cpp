#include "record/settings.h"

#include <cstring>
#include <string>
#include <vector>

#include "library/track_manager.h"
#include "tests/support/device.h"

namespace {

// Settings of a test's own.
struct Settings : CTrackMangSet {
    Settings() = default;
};

std::string FolderOf(char* buffer) { return buffer; }

using PathGetter = char* (CTrackMangSet::*)();
using PathSetter = void (CTrackMangSet::*)(char*);
struct PathPair {
    const char* name;
    PathGetter get;
    PathSetter set;
};
constexpr PathPair kPaths[] = {
    {"SdExtTrackPath", &CTrackMangSet::GetSdExtTrackPath, &CTrackMangSet::SetSdExtTrackPath},
    {"NdExtTrackPath", &CTrackMangSet::GetNdExtTrackPath, &CTrackMangSet::SetNdExtTrackPath},
    {"SdUserDataPath", &CTrackMangSet::GetSdUserDataPath, &CTrackMangSet::SetSdUserDataPath},
    {"NdUserDataPath", &CTrackMangSet::GetNdUserDataPath, &CTrackMangSet::SetNdUserDataPath},
    {"SdTmpTrackAutoSavePath", &CTrackMangSet::GetSdTmpTrackAutoSavePath,
     &CTrackMangSet::SetSdTmpTrackAutoSavePath},
    {"NdTmpTrackAutoSavePath", &CTrackMangSet::GetNdTmpTrackAutoSavePath,
     &CTrackMangSet::SetNdTmpTrackAutoSavePath},
};

void SetPath(CTrackMangSet& settings, const PathPair& path, std::string folder) {
    (settings.*path.set)(folder.data());
}
std::string GetPath(CTrackMangSet& settings, const PathPair& path) { return (settings.*path.get)(); }

void ExpectDefaults(CTrackMangSet& settings) {
    EXPECT_EQ(settings.GetTrackRecordMode(), RecTrackAuto);
    EXPECT_EQ(settings.GetRecordDisBrk(), 3);
    EXPECT_EQ(settings.GetRecordTimeBrk(), 1);
    EXPECT_TRUE(settings.GetTrackOverWriteMode());
    EXPECT_EQ(settings.GetTrackDefaultColor(), 0xFF0000u);
    EXPECT_TRUE(settings.GetTrackRecordState());
    EXPECT_FALSE(settings.GetTmpTkIsSaveInFull());
    EXPECT_EQ(settings.GetTmpTkStartPos(), 0);
    EXPECT_FALSE(settings.GetbHasSdCard());
    EXPECT_EQ(settings.GetStoreTrkPlace(), StoreTrkAuto);
}

void ChangeEveryValue(CTrackMangSet& settings) {
    settings.SetTrackRecordMode(RecTrackByTime);
    settings.SetRecordDisBrk(77);
    settings.SetRecordTimeBrk(88);
    settings.SetTrackOverWriteMode(false);
    settings.SetTrackDefaultColor(0x123456);
    settings.SetTrackRecordState(false);
    settings.SetTmpTkIsSaveInFull(true);
    settings.SetTmpTkStartPos(4321);
    settings.SetbHasSdCard(true);
    settings.SetStoreTrkPlace(StoreTrkSdCard);
}

void ExpectEveryValueChanged(CTrackMangSet& settings) {
    EXPECT_EQ(settings.GetTrackRecordMode(), RecTrackByTime);
    EXPECT_EQ(settings.GetRecordDisBrk(), 77);
    EXPECT_EQ(settings.GetRecordTimeBrk(), 88);
    EXPECT_FALSE(settings.GetTrackOverWriteMode());
    EXPECT_EQ(settings.GetTrackDefaultColor(), 0x123456u);
    EXPECT_FALSE(settings.GetTrackRecordState());
    EXPECT_TRUE(settings.GetTmpTkIsSaveInFull());
    EXPECT_EQ(settings.GetTmpTkStartPos(), 4321);
    EXPECT_TRUE(settings.GetbHasSdCard());
    EXPECT_EQ(settings.GetStoreTrkPlace(), StoreTrkSdCard);
}

}  // namespace

class SettingsTest : public DeviceTest {
 protected:
    // Each path a folder of its own.
    void ChangeEveryPath() {
        for (const PathPair& path : kPaths) SetPath(m_settings, path, "\\" + std::string(path.name));
    }

    Settings m_settings;
};

TEST_F(SettingsTest, FreshObject_HasTheDefaults) { ExpectDefaults(m_settings); }

TEST_F(SettingsTest, Init_RestoresTheDefaultsAndLeavesThePaths) {
    ChangeEveryValue(m_settings);
    ChangeEveryPath();
    m_settings.Init();
    ExpectDefaults(m_settings);
    for (const PathPair& path : kPaths) EXPECT_EQ(GetPath(m_settings, path), "\\" + std::string(path.name));
}

TEST_F(SettingsTest, EveryValue_IsKeptAsSet) {
    ChangeEveryValue(m_settings);
    ExpectEveryValueChanged(m_settings);
}

TEST_F(SettingsTest, ModesAndPlaces_Are32BitNumbers) {
    EXPECT_EQ(sizeof(EnumRecTrack), 4u);
    EXPECT_EQ(sizeof(EnumStoreTrack), 4u);
    EXPECT_EQ((std::vector<int>{RecTrackByDist, RecTrackByTime, RecTrackAuto}), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ((std::vector<int>{StoreTrkDevice, StoreTrkSdCard, StoreTrkAuto}), (std::vector<int>{0, 1, 2}));
}

TEST_F(SettingsTest, RecordingValues_AreSetAndReadAtOnce) {
    m_settings.SetTrackRecordMode(RecTrackByDist, 25, 7);
    EnumRecTrack mode = RecTrackAuto;
    int metres = 0;
    int seconds = 0;
    m_settings.GetTrackRecordMode(mode, metres, seconds);
    EXPECT_EQ(mode, RecTrackByDist);
    EXPECT_EQ(metres, 25);
    EXPECT_EQ(seconds, 7);
    EXPECT_EQ(m_settings.GetRecordDisBrk(), 25);
    EXPECT_EQ(m_settings.GetRecordTimeBrk(), 7);
}

TEST_F(SettingsTest, Values_AreNotValidated) {
    m_settings.SetTrackRecordMode(static_cast<EnumRecTrack>(-7), -1, -2);
    m_settings.SetStoreTrkPlace(static_cast<EnumStoreTrack>(99));
    EXPECT_EQ(m_settings.GetTrackRecordMode(), static_cast<EnumRecTrack>(-7));
    EXPECT_EQ(m_settings.GetRecordDisBrk(), -1);
    EXPECT_EQ(m_settings.GetRecordTimeBrk(), -2);
    EXPECT_EQ(m_settings.GetStoreTrkPlace(), static_cast<EnumStoreTrack>(99));
}

TEST_F(SettingsTest, DefaultDevicePaths_ReadAsTheRoot) {
    EXPECT_EQ(FolderOf(m_settings.GetNdExtTrackPath()), "\\");
    EXPECT_EQ(FolderOf(m_settings.GetNdUserDataPath()), "\\");
}

TEST_F(SettingsTest, DefaultDevicePaths_HoldUtf16AndThenZeros) {
    const std::string text = "\\Program Files\\App\\UserData\\Track";
    std::string expected(256, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) expected[2 * i] = text[i];
    EXPECT_EQ(std::string(m_settings.GetNdExtTrackPath(), 256), expected);
}

TEST_F(SettingsTest, OtherPaths_AreEmptyUntilSet) {
    EXPECT_EQ(FolderOf(m_settings.GetSdExtTrackPath()), "");
    EXPECT_EQ(FolderOf(m_settings.GetSdUserDataPath()), "");
    EXPECT_EQ(FolderOf(m_settings.GetSdTmpTrackAutoSavePath()), "");
    EXPECT_EQ(FolderOf(m_settings.GetNdTmpTrackAutoSavePath()), "");
}

TEST_F(SettingsTest, EachPathSetter_SetsItsOwnAndMakesTheFolder) {
    ChangeEveryPath();
    for (const PathPair& path : kPaths) {
        const std::string folder = "\\" + std::string(path.name);
        EXPECT_EQ(GetPath(m_settings, path), folder);
        EXPECT_TRUE(std::filesystem::is_directory(OnDisk(folder))) << folder;
    }
}

TEST_F(SettingsTest, ShorterPath_LeavesNothingOfTheLongerOneBehind) {
    SetPath(m_settings, kPaths[0], "\\ALongFolderName");
    SetPath(m_settings, kPaths[0], "\\B");
    EXPECT_EQ(std::string(m_settings.GetSdExtTrackPath(), 256), "\\B" + std::string(254, '\0'));
}

TEST_F(SettingsTest, PathOf300Characters_IsCutTo255) {
    const std::string longPath = "\\" + std::string(299, 'x');
    for (const PathPair& path : kPaths) {
        SetPath(m_settings, path, longPath);
        EXPECT_EQ(GetPath(m_settings, path), longPath.substr(0, 255)) << path.name;
    }
}

TEST_F(SettingsTest, PathThatHasToBeCut_MakesTheFolderOfTheWholeText) {
    const std::string parent = "\\" + std::string(200, 'p');
    const std::string whole = parent + "\\" + std::string(56, 'c');  // 258 characters
    std::filesystem::create_directory(OnDisk(parent));
    SetPath(m_settings, kPaths[0], whole);
    EXPECT_EQ(FolderOf(m_settings.GetSdExtTrackPath()), whole.substr(0, 255));
    EXPECT_TRUE(Exists(whole));
    EXPECT_FALSE(Exists(whole.substr(0, 255)));
}

TEST_F(SettingsTest, FolderThatCannotBeMade_IsKeptAllTheSame) {
    SetPath(m_settings, kPaths[1], "\\Missing\\Parent\\Track");
    EXPECT_EQ(FolderOf(m_settings.GetNdExtTrackPath()), "\\Missing\\Parent\\Track");
    EXPECT_FALSE(Exists("\\Missing"));
}

TEST_F(SettingsTest, PathGetters_GiveTheBufferItself) {
    std::strcpy(m_settings.GetNdUserDataPath(), "\\Written");
    EXPECT_EQ(FolderOf(m_settings.GetNdUserDataPath()), "\\Written");
}

TEST_F(SettingsTest, PathSetToItsOwnBuffer_Stays) {
    SetPath(m_settings, kPaths[0], "\\Folder");
    m_settings.SetSdExtTrackPath(m_settings.GetSdExtTrackPath());
    EXPECT_EQ(FolderOf(m_settings.GetSdExtTrackPath()), "\\Folder");
}

TEST_F(SettingsTest, Choosers_TakeTheMediumAskedForWhetherOrNotACardIsPresent) {
    ChangeEveryPath();
    for (const bool present : {false, true}) {
        m_settings.SetbHasSdCard(present);
        EXPECT_EQ(FolderOf(m_settings.GetExtTrackPath(true)), "\\SdExtTrackPath");
        EXPECT_EQ(FolderOf(m_settings.GetExtTrackPath(false)), "\\NdExtTrackPath");
        EXPECT_EQ(FolderOf(m_settings.GetTmpTrackAutoSavePath(true)), "\\SdTmpTrackAutoSavePath");
        EXPECT_EQ(FolderOf(m_settings.GetTmpTrackAutoSavePath(false)), "\\NdTmpTrackAutoSavePath");
        EXPECT_EQ(FolderOf(m_settings.GetUserDataPath(true)), "\\SdUserDataPath");
        EXPECT_EQ(FolderOf(m_settings.GetUserDataPath(false)), "\\NdUserDataPath");
    }
}

TEST_F(SettingsTest, TrackSavePath_TellsSavedFromAutoSaved) {
    ChangeEveryPath();
    EXPECT_EQ(FolderOf(m_settings.GetTrackSavePath(true, true)), "\\SdExtTrackPath");
    EXPECT_EQ(FolderOf(m_settings.GetTrackSavePath(true, false)), "\\NdExtTrackPath");
    EXPECT_EQ(FolderOf(m_settings.GetTrackSavePath(false, true)), "\\SdTmpTrackAutoSavePath");
    EXPECT_EQ(FolderOf(m_settings.GetTrackSavePath(false, false)), "\\NdTmpTrackAutoSavePath");
}

TEST_F(SettingsTest, Copies_TakeEveryValueAndWholePathBuffers) {
    ChangeEveryValue(m_settings);
    ChangeEveryPath();
    m_settings.GetSdExtTrackPath()[255] = 'z';
    Settings assigned;
    assigned = m_settings;
    CTrackMangSet copied(m_settings);
    for (CTrackMangSet* copy : {static_cast<CTrackMangSet*>(&assigned), &copied}) {
        ExpectEveryValueChanged(*copy);
        for (const PathPair& path : kPaths)
            EXPECT_EQ(std::string((copy->*path.get)(), 256), std::string((m_settings.*path.get)(), 256));
    }
}

TEST_F(SettingsTest, Instance_IsAlwaysTheSame) {
    ASSERT_NE(CTrackMangSet::Instance(), nullptr);
    EXPECT_EQ(CTrackMangSet::Instance(), CTrackMangSet::Instance());
}

// --- The trip's start, asked of the manager's recording ---

class TripStartSetting : public DeviceTest {
 protected:
    ~TripStartSetting() override { Recording().CloseEx(); }
    CTrackEx& Recording() { return *CTrackMan::Instance()->GetLogTrack(); }
    bool OpenRecording(const std::string& pointFile) {
        Write("\\App\\Log.dat", pointFile);
        Recording().SetFilePathEx("Log.dat", "LogHd.dat");
        return Recording().OpenEx();
    }
};

TEST_F(TripStartSetting, OpenRecording_GivesTheSlotOfItsOldestPoint) {
    const std::string twoRecords(96, '\0');
    ASSERT_TRUE(OpenRecording(std::string("\x02\x00\x02\x00", 4) + twoRecords));
    CTrackMangSet::Instance()->SetTmpTkStartPos(99);
    CTrackMangSet::Instance()->ReSetTmpTkStartPos();
    EXPECT_EQ(CTrackMangSet::Instance()->GetTmpTkStartPos(), 2);
}

TEST_F(TripStartSetting, ClosedRecording_GivesZero) {
    CTrackMangSet::Instance()->SetTmpTkStartPos(99);
    CTrackMangSet::Instance()->ReSetTmpTkStartPos();
    EXPECT_EQ(CTrackMangSet::Instance()->GetTmpTkStartPos(), 0);
}
