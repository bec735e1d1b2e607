// The manager itself: its one instance, its marks and constant answers, its callbacks.
#include "tests/library/library_fixture.h"
#include "tests/support/virtual_slot.h"

namespace {

int s_loadCalls = 0;
std::thread::id s_loadCaller;
std::vector<bool> s_spaceQuestions;

void OnLoaded() {
    ++s_loadCalls;
    s_loadCaller = std::this_thread::get_id();
}

void OnSingleTrack(CTrackProxy*) {}

TckPt Fix(std::int32_t time) {
    TckPt fix{};
    fix.dLatitude = time * 0.001;
    fix.lTime = time;
    return fix;
}

}  // namespace

using Manager = LibraryTest;

TEST(ManagerInterface, Operations_KeepTheirOrder) {
    EXPECT_EQ(SlotOf(&CTrackMan::Init), 1u);
    EXPECT_EQ(SlotOf(&CTrackMan::Load), 2u);
    EXPECT_EQ(SlotOf(&CTrackMan::Save), 3u);
}

TEST_F(Manager, Instance_IsOneObject) { EXPECT_EQ(CTrackMan::Instance(), CTrackMan::Instance()); }

TEST_F(Manager, AfterItsDestruction_IsMadeAnew) {
    Library().SetInUse(true);
    delete CTrackMan::Instance();
    EXPECT_FALSE(Library().GetInUse());
}

TEST_F(Manager, Settings_AreTheOnesOfTheProcess) {
    EXPECT_EQ(Library().GetTrackMangSet(), CTrackMangSet::Instance());
}

TEST_F(Manager, NewOne_IsEmptyNotStartedAndLoading) {
    EXPECT_EQ(Library().GetCnt(), 0u);
    EXPECT_FALSE(Library().isStart());
    EXPECT_FALSE(Library().GetInUse());
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 0u);
}

TEST_F(Manager, LoadSaveAndSaveConfig_DoNothing) {
    const auto files = FilesIn("\\App");
    EXPECT_TRUE(Library().Load(nullptr));
    EXPECT_TRUE(Library().Save(nullptr));
    Library().SaveConfig();
    EXPECT_EQ(FilesIn("\\App"), files);
}

TEST_F(Manager, InUse_IsAMarkOfTheHosts) {
    Library().SetInUse(true);
    EXPECT_TRUE(Library().GetInUse());
    Library().SetInUse(false);
    EXPECT_FALSE(Library().GetInUse());
}

TEST_F(Manager, InUseOfATrack_IsFalseForEveryIndex) {
    List("A");
    EXPECT_FALSE(Library().InUse(0));
    EXPECT_FALSE(Library().InUse(1));
    EXPECT_FALSE(Library().InUse(4000000000u));
}

TEST_F(Manager, Useable_CountsDownFrom20AndStopsAtZero) {
    EXPECT_EQ(Library().GetUseable(), 20);
    for (const char* name : {"A", "B", "C"}) List(name);
    EXPECT_EQ(Library().GetUseable(), 17);
    for (int i = 3; i < 20; ++i) List(std::to_string(i));
    EXPECT_EQ(Library().GetUseable(), 0);
    List("one more");
    EXPECT_EQ(Library().GetUseable(), 0);
}

TEST_F(Manager, SpaceRate_IsTheFilledPartOf10000Points) {
    Load();
    EXPECT_EQ(Library().GetSpaceRate(), 0.0);
    Points points;
    for (std::int32_t i = 1; i <= 2500; ++i) points.push_back(Fix(i));
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(points));
    EXPECT_EQ(Library().GetSpaceRate(), 0.25);
}

TEST_F(Manager, IsFull_IsNeverTrue) {
    Settings().SetTrackOverWriteMode(false);
    Load();
    Points points;
    for (std::int32_t i = 1; i < 10000; ++i) points.push_back(Fix(i));
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(points));
    points.resize(1);
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(points));
    EXPECT_EQ(Library().GetSpaceRate(), 1.0);
    EXPECT_FALSE(Library().IsFull());
}

TEST_F(Manager, EnoughSpace_IsTheCallbacksAnswer) {
    s_spaceQuestions.clear();
    Library().SetIsHasEnoughSpaceCallFun([](bool onCard) {
        s_spaceQuestions.push_back(onCard);
        return onCard;
    });
    EXPECT_TRUE(Library().hasEnoughSpace(true));
    EXPECT_FALSE(Library().hasEnoughSpace(false));
    EXPECT_EQ(s_spaceQuestions, (std::vector<bool>{true, false}));
}

TEST_F(Manager, EnoughSpaceWithoutACallback_IsFalse) {
    Library().SetIsHasEnoughSpaceCallFun(nullptr);
    EXPECT_FALSE(Library().hasEnoughSpace(true));
    EXPECT_FALSE(Library().hasEnoughSpace(false));
}

TEST_F(Manager, InitTrackMap_CallsTheLoadCallbackOnTheCallersThread) {
    s_loadCalls = 0;
    Library().SetLoadTrackToMapCallFun(OnLoaded);
    Library().InitTrackMap();
    EXPECT_EQ(s_loadCalls, 1);
    EXPECT_EQ(s_loadCaller, std::this_thread::get_id());
    Library().SetLoadTrackToMapCallFun(nullptr);
    Library().InitTrackMap();
    EXPECT_EQ(s_loadCalls, 1);
}

TEST_F(Manager, SingleTrackCallback_IsStoredOnly) {
    Store("walk");
    Library().SetLoadSgTrackToMapCallFun(OnSingleTrack);
    EXPECT_EQ(TrackManInside::SingleTrackCallback(Library()), &OnSingleTrack);
    Load();
    Library().SetLoadSgTrackToMapCallFun(nullptr);
    EXPECT_EQ(TrackManInside::SingleTrackCallback(Library()), nullptr);
}

TEST_F(Manager, Init_ForgetsTracksCallbacksAndMarks) {
    Store("walk");
    Load();
    s_loadCalls = 0;
    Library().SetLoadTrackToMapCallFun(OnLoaded);
    Library().SetLoadSgTrackToMapCallFun(OnSingleTrack);
    Library().SetInUse(true);
    Library().Init();
    EXPECT_EQ(Library().GetCnt(), 0u);
    EXPECT_TRUE(TrackManInside::ScanRecords(Library()).empty());
    EXPECT_FALSE(Library().GetInUse());
    EXPECT_TRUE(Library().IsLoadingDataToMap());
    EXPECT_FALSE(Library().hasEnoughSpace(false));
    Library().InitTrackMap();
    EXPECT_EQ(s_loadCalls, 0);
    EXPECT_EQ(TrackManInside::SingleTrackCallback(Library()), nullptr);
    EXPECT_TRUE(Exists(PathOf("walk")));
}

TEST_F(Manager, Init_LeavesTheRecordingRunning) {
    Load();
    ASSERT_TRUE(Library().Start());
    Points points{Fix(1), Fix(2)};
    ASSERT_TRUE(Library().GetLogTrack()->AppendEx(points));
    Library().Init();
    EXPECT_TRUE(Library().isStart());
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 2u);
}

TEST_F(Manager, Copy_HasSettingsCallbacksAndMarksAndNothingElse) {
    Store("walk");
    Load();
    Library().Start();
    Library().SetInUse(true);
    Library().SetLoadTrackToMapCallFun(OnLoaded);
    Library().SetLoadSgTrackToMapCallFun(OnSingleTrack);
    CTrackMan* const original = CTrackMan::Instance();
    {
        const auto copy = TrackManInside::Copy(Library());
        EXPECT_TRUE(copy->GetInUse());
        EXPECT_EQ(copy->GetTrackMangSet(), &Settings());
        EXPECT_EQ(TrackManInside::LoadCallback(*copy), &OnLoaded);
        EXPECT_EQ(TrackManInside::SingleTrackCallback(*copy), &OnSingleTrack);
        EXPECT_TRUE(copy->hasEnoughSpace(false));
    }
    EXPECT_EQ(CTrackMan::Instance(), original);
    EXPECT_EQ(Library().GetCnt(), 1u);
    EXPECT_TRUE(Library().isStart());
}

TEST_F(Manager, StartAndStop_AnswerWhetherTheyChangedAnything) {
    EXPECT_FALSE(Library().Stop());
    EXPECT_TRUE(Library().Start());
    EXPECT_FALSE(Library().Start());
    EXPECT_TRUE(Library().isStart());
    EXPECT_TRUE(Library().Stop());
    EXPECT_FALSE(Library().isStart());
    EXPECT_FALSE(Library().Stop());
}

TEST_F(Manager, StartInAnUnknownMode_IsTrueThoughNothingIsRecorded) {
    Settings().SetTrackRecordMode(static_cast<EnumRecTrack>(3));
    EXPECT_TRUE(Library().Start());
    EXPECT_FALSE(Library().isStart());
    EXPECT_TRUE(Library().Start());
    EXPECT_FALSE(Library().Stop());
}

TEST_F(Manager, StrategyOfEachMode_IsTheOneOfTheSettings) {
    const auto made = [](EnumRecTrack mode) {
        Settings().SetTrackRecordMode(mode, 10, 5);
        return TrackManInside::CreateSaveStragy(Library());
    };
    EXPECT_NE(dynamic_cast<CTrackDistStragy*>(made(RecTrackByDist).get()), nullptr);
    EXPECT_NE(dynamic_cast<CTrackTimeStragy*>(made(RecTrackByTime).get()), nullptr);
    EXPECT_NE(dynamic_cast<CTrackAutoStragy*>(made(RecTrackAuto).get()), nullptr);
    EXPECT_EQ(made(static_cast<EnumRecTrack>(-1)), nullptr);
}

TEST_F(Manager, RecordingByTimeWithoutAnInterval_RecordsNothing) {
    Settings().SetTrackRecordMode(RecTrackByTime, 3, 0);
    EXPECT_EQ(TrackManInside::CreateSaveStragy(Library()), nullptr);
}
