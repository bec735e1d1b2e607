// A recording becomes a stored track: on request, and before its beginning is overwritten.
#include <cmath>

#include "tests/library/library_fixture.h"
#include "tests/library/log_on_disk.h"

class SavedRecording : public LibraryTest {
 protected:
    SavedRecording() { Load(); }

    static constexpr char kFolder[] = "\\App\\UserData\\AutoSave";

    static void Record(int first, int end, int secondsLater = 0) {
        Points points;
        for (int i = first; i < end; ++i) {
            points.push_back(RideFix(i));
            points.back().lTime += secondsLater;
        }
        ASSERT_TRUE(Library().GetLogTrack()->AppendEx(points));
    }
    static bool Save(Points pending = {}) { return Library().SaveTempTrkToTrack(pending); }

    std::string SavedFile() const {
        const auto files = FilesIn(kFolder);
        EXPECT_EQ(files.size(), 1u);
        return files.empty() ? "" : std::string(kFolder) + "\\" + files.front();
    }
    StoredTrack Saved() const { return ReadBack(BytesOf(SavedFile())); }

    // The ride's fixes by number, as a document has them.
    std::vector<int> SavedFixes() const {
        std::vector<int> fixes;
        for (const TextPoint& point : PointsIn(BytesOf(SavedFile())))
            fixes.push_back(static_cast<int>(std::lround(std::stod(point.ele) - 100.0)));
        return fixes;
    }
};

TEST_F(SavedRecording, Name_IsTheLocalTimeOfSaving) {
    Record(0, 5);
    const std::string before = "AutoSaveTrk-" + LocalTimeText();
    ASSERT_TRUE(Save());
    const std::string after = "AutoSaveTrk-" + LocalTimeText();
    const std::string file = FilesIn(kFolder).at(0);
    EXPECT_LE(before + ".gpx", file);
    EXPECT_LE(file, after + ".gpx");
    EXPECT_EQ(Saved().name + ".gpx", file);
}

TEST_F(SavedRecording, Color_IsTheSettingsDefault) {
    Settings().SetTrackDefaultColor(0x0012AB34);
    Record(0, 5);
    ASSERT_TRUE(Save());
    EXPECT_EQ(Saved().color, std::to_string(0x0012AB34));
    EXPECT_EQ(Saved().visible, "1");
}

TEST_F(SavedRecording, StraightSlice_IsThinnedToItsEnds) {
    Record(0, 50);
    ASSERT_TRUE(Save());
    EXPECT_EQ(SavedFixes(), (std::vector<int>{0, 49}));
}

TEST_F(SavedRecording, Slices_AreThinnedOneByOneAndFollowOneAnother) {
    Record(0, 50);
    Record(50, 80, 1800);
    ASSERT_EQ(Library().GetLogTrack()->GetSliceNum(), 2);
    ASSERT_TRUE(Save());
    EXPECT_EQ(SavedFixes(), (std::vector<int>{0, 49, 50, 79}));
}

TEST_F(SavedRecording, PendingPoints_FollowUnthinned) {
    Record(0, 50);
    ASSERT_TRUE(Save({RideFix(50), RideFix(51), RideFix(52)}));
    EXPECT_EQ(SavedFixes(), (std::vector<int>{0, 49, 50, 51, 52}));
}

TEST_F(SavedRecording, Statistics_AreThoseOfTheSavedPoints) {
    Record(0, 50);
    ASSERT_TRUE(Save({RideFix(50)}));
    EXPECT_EQ(Saved().number, "3");
    EXPECT_NEAR(std::stod(Saved().length), 50 * 11.112, 0.01);
    EXPECT_EQ(Saved().startTime, "2014-05-13T16:53:20Z");
    EXPECT_EQ(Saved().endTime, "2014-05-13T16:54:10Z");
}

TEST_F(SavedRecording, Slices_StayAsTheyAre) {
    Record(0, 50);
    const std::string before = BytesOf("\\App\\Log.dat");
    ASSERT_TRUE(Save());
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 50u);
    EXPECT_EQ(Library().GetLogTrack()->GetSliceTrace(0)->GetPtList().size(), 50u);
    EXPECT_EQ(BytesOf("\\App\\Log.dat"), before);
}

TEST_F(SavedRecording, List_DoesNotChangeUntilTheNextLoad) {
    Settings().SetNdTmpTrackAutoSavePath(Settings().GetNdExtTrackPath());
    Record(0, 50);
    ASSERT_TRUE(Save());
    EXPECT_EQ(Library().GetCnt(), 0u);
    Load();
    ASSERT_EQ(Library().GetCnt(), 1u);
    EXPECT_EQ(Library().GetTrack(0ul)->GetName().substr(0, 12), "AutoSaveTrk-");
}

TEST_F(SavedRecording, WithACard_GoesToTheCardsAutoSaveFolder) {
    InsertCard();
    Record(0, 5);
    ASSERT_TRUE(Save());
    EXPECT_EQ(FilesIn("\\SDMMC\\UserData\\AutoSave").size(), 1u);
    EXPECT_TRUE(FilesIn(kFolder).empty());
}

TEST_F(SavedRecording, WithoutRoom_Fails) {
    s_roomInDevice = false;
    Record(0, 5);
    EXPECT_FALSE(Save());
    EXPECT_TRUE(FilesIn(kFolder).empty());
}

TEST_F(SavedRecording, WithoutItsFolder_Fails) {
    Settings().SetNdTmpTrackAutoSavePath(std::string("\\App\\Missing\\AutoSave").data());
    Record(0, 5);
    EXPECT_FALSE(Save());
    EXPECT_FALSE(Exists("\\App\\Missing"));
}

TEST_F(SavedRecording, OfNothing_IsATrackWithoutPoints) {
    EXPECT_TRUE(Save());
    EXPECT_TRUE(Saved().segments.front().empty());
}

// --- Before the beginning is overwritten ---

class OverwrittenRecording : public SavedRecording {
 protected:
    OverwrittenRecording() {
        Settings().SetTmpTkIsSaveInFull(true);
        Settings().SetTrackRecordMode(RecTrackAuto, 3, 1);
        Library().Start();
    }
    static void Ride(int first, int end) {
        for (int i = first; i < end; ++i) Library().SaveToTempTrack(RideFix(i));
    }
};

TEST_F(OverwrittenRecording, BatchThatReachesTheBeginning_SavesTheRecordingFirst) {
    Record(0, 9950);
    Ride(9950, 10010);
    EXPECT_TRUE(FilesIn(kFolder).empty());
    Ride(10010, 10011);
    std::vector<int> expected{0, 9949};  // as it was before the batch, thinned, and the batch, not thinned
    for (int i = 9950; i < 10010; ++i) expected.push_back(i);
    EXPECT_EQ(SavedFixes(), expected);
}

TEST_F(OverwrittenRecording, BatchThatReachesTheBeginning_IsRecordedOnce) {
    Record(0, 9950);
    Ride(9950, 10011);
    const LogOnDisk log(OnDisk("\\App\\Log.dat"));
    EXPECT_EQ(log.start, 10u);
    EXPECT_EQ(log.slots[9999].lTime, kRideStart + 9999);
    EXPECT_EQ(log.slots[0].lTime, kRideStart + 10000);
    EXPECT_EQ(Library().GetLogTrack()->GetPtCount(), 10000u);
}

TEST_F(OverwrittenRecording, SavingThatFails_DoesNotStopTheRecording) {
    s_roomInDevice = false;
    Record(0, 9950);
    Ride(9950, 10011);
    EXPECT_TRUE(FilesIn(kFolder).empty());
    EXPECT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).start, 10u);
}

TEST_F(OverwrittenRecording, WhenNotAskedFor_IsNotSaved) {
    Settings().SetTmpTkIsSaveInFull(false);
    Record(0, 9950);
    Ride(9950, 10011);
    EXPECT_TRUE(FilesIn(kFolder).empty());
    EXPECT_EQ(LogOnDisk(OnDisk("\\App\\Log.dat")).start, 10u);
}

TEST_F(OverwrittenRecording, BatchThatDoesNotReachTheBeginning_SavesNothing) {
    Record(0, 9000);
    Ride(9000, 9061);
    EXPECT_TRUE(FilesIn(kFolder).empty());
}
