// The recording in memory: how it is cut, trimmed, cleared, and what is asked of it.

#include "tests/record/log_track_fixture.h"
#include "track/geodesy.h"

class LogTrackSlices : public LogTrackTest {
 protected:
    // Batches of these sizes with a pause of an hour between them.
    void RecordWithPauses(std::initializer_list<int> sizes) {
        for (const int size : sizes) {
            Record(size);
            Pause(3600);
        }
    }
};

TEST_F(LogTrackSlices, GapThatCuts_IsAConstantThatHostsMayReferTo) {
    const int& gap = CTrackEx::s_iDiffTime;
    EXPECT_EQ(gap, 1800);
}

TEST_F(LogTrackSlices, BatchesOf1799SecondsApart_JoinOneSlice) {
    Open(10);
    Record(2);
    Pause(1799);
    Record(2);
    EXPECT_EQ(SliceSizes(), std::vector<int>{4});
}

TEST_F(LogTrackSlices, BatchesOf1800SecondsApart_MakeTwo) {
    Open(10);
    Record(2);
    Pause(1800);
    Record(2);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{2, 2}));
}

TEST_F(LogTrackSlices, PausesWithinABatch_CutIt) {
    Open(10);
    Points batch = NextFixes(2);
    Pause(1800);
    for (const TckPt& fix : NextFixes(3)) batch.push_back(fix);
    Pause(1799);
    batch.push_back(NextFix());
    Pause(100000);
    batch.push_back(NextFix());
    ASSERT_TRUE(m_track->AppendEx(batch));
    EXPECT_EQ(SliceSizes(), (std::vector<int>{2, 4, 1}));
}

TEST_F(LogTrackSlices, StepBackInTime_CutsLikeAPause) {
    Open(10);
    Record(2);
    Pause(-1800);
    Record(1);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{2, 1}));
}

TEST_F(LogTrackSlices, TimesFartherApartThan32Bits_Cut) {
    Open(10);
    Points batch(2, TckPt{});
    batch[0].lTime = -2'000'000'000;
    batch[1].lTime = 2'147'483'647;
    ASSERT_TRUE(m_track->AppendEx(batch));
    EXPECT_EQ(SliceSizes(), (std::vector<int>{1, 1}));
}

TEST_F(LogTrackSlices, BatchAfterARestart_JoinsWhatWasRead) {
    Open(10);
    Record(3);
    Open(10);
    Record(2);
    EXPECT_EQ(SliceSizes(), std::vector<int>{5});
}

TEST_F(LogTrackSlices, BatchAfterARestart_AddsToTheStatisticsOfWhatWasRead) {
    Open(10);
    Record(5);
    Open(10);
    Record(3);
    CTrack slice(*m_track->GetSliceTrace(0));
    EXPECT_NEAR(m_track->GetLength(), AidCalLength(slice.GetPtList()), 1e-6);
    EXPECT_EQ(slice.GetEndTime(), kFirstTime + 7);
}

// --- Trimming ---

TEST_F(LogTrackSlices, FourPointsBehindEightInARingOfTen_TakeTheTwoOldestOutOfTheFirstSlice) {
    Open(10);
    Record(5);
    Pause(3600);
    Record(3);
    Record(4);
    EXPECT_EQ(m_track->GetPtCount(), 10u);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{3, 7}));
    EXPECT_EQ(RawBytes(Remembered().front()), Sent(2));
}

TEST_F(LogTrackSlices, EmptiedSlices_AreRemoved) {
    Open(10);
    RecordWithPauses({2, 3, 4});
    Record(5);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{1, 4, 5}));
    Record(1);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{4, 6}));
    EXPECT_EQ(m_track->GetSliceNum(), 2);
}

TEST_F(LogTrackSlices, TrimmedSlice_KeepsTrueStatistics) {
    Open(20);
    Record(19);
    Record(15);
    CTrack slice(*m_track->GetSliceTrace(0));
    EXPECT_EQ(slice.GetStartTime(), kFirstTime + 14);
    EXPECT_NEAR(slice.GetLength(), AidCalLength(slice.GetPtList()), 1e-6);
}

// --- Statistics of the whole ---

TEST_F(LogTrackSlices, WithoutPoints_EverythingIsZero) {
    Open(10);
    EXPECT_EQ(m_track->GetStartTime(), 0);
    EXPECT_EQ(m_track->GetEndTime(), 0);
    EXPECT_EQ(m_track->GetLength(), 0.0);
    EXPECT_EQ(m_track->GetPtCount(), 0u);
}

TEST_F(LogTrackSlices, StartEndAndLength_SpanAllSlicesWithoutThePauses) {
    Open(20);
    RecordWithPauses({3, 4});
    EXPECT_EQ(m_track->GetStartTime(), kFirstTime);
    EXPECT_EQ(m_track->GetEndTime(), m_sent.back().lTime);
    const Points first = m_track->GetSliceTrace(0)->GetPtList();
    const Points second = m_track->GetSliceTrace(1)->GetPtList();
    EXPECT_NEAR(m_track->GetLength(), AidCalLength(first) + AidCalLength(second), 1e-9);
}

TEST_F(LogTrackSlices, IndexOutOfRange_GivesNull) {
    Open(20);
    RecordWithPauses({3, 4});
    EXPECT_NE(m_track->GetSliceTrace(1), nullptr);
    EXPECT_EQ(m_track->GetSliceTrace(m_track->GetSliceNum()), nullptr);
    EXPECT_EQ(m_track->GetSliceTrace(-1), nullptr);
}

// --- Clearing and writing anew ---

TEST_F(LogTrackSlices, ClearedSlice_IsGoneFromMemoryOnly) {
    Open(20);
    RecordWithPauses({3, 4, 5});
    const std::string before = BytesOf(kPointFile);
    m_track->ClearSliceTrace(1);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{3, 5}));
    EXPECT_EQ(m_track->GetPtCount(), 8u);
    EXPECT_EQ(BytesOf(kPointFile), before);
}

TEST_F(LogTrackSlices, ClearingAnIndexOutOfRange_DoesNothing) {
    Open(20);
    RecordWithPauses({3, 4});
    m_track->ClearSliceTrace(-1);
    m_track->ClearSliceTrace(2);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{3, 4}));
    EXPECT_EQ(m_track->GetPtCount(), 7u);
}

TEST_F(LogTrackSlices, SlicesSaved_AreTheWholeFile) {
    Open(20);
    RecordWithPauses({3, 4, 5});
    m_track->ClearSliceTrace(1);
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(BytesOf(kPointFile), described::RingFile(0, {Sent(0), Sent(1), Sent(2), Sent(7), Sent(8), Sent(9),
                                                           Sent(10), Sent(11)}));
}

TEST_F(LogTrackSlices, AllSlicesClearedAndSaved_LeaveAnEmptyRing) {
    Open(20);
    RecordWithPauses({3, 4});
    m_track->ClearAllSliceTrace();
    EXPECT_EQ(m_track->GetPtCount(), 0u);
    EXPECT_EQ(m_track->GetSliceNum(), 0);
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(BytesOf(kPointFile), std::string(4, '\0'));
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(Ring(), (RingState{0, 2}));
}

TEST_F(LogTrackSlices, WrappedRingSaved_IsUnwrappedWithoutItsZeros) {
    Open(5);
    Record(4);
    Record(3);
    ASSERT_EQ(Ring(), (RingState{2, 5}));
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(BytesOf(kPointFile), described::RingFile(0, {Sent(2), Sent(3), Sent(4), Sent(5), Sent(6)}));
    EXPECT_TRUE(Record(1));
    EXPECT_EQ(Ring(), (RingState{1, 5}));
}

TEST_F(LogTrackSlices, SlicesSaved_TakeTheHeadDataAlong) {
    Open(20);
    m_track->SetName("Renamed");
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(BytesOf(kHeadFile).substr(32, 8), std::string("Renamed\0", 8));
}

TEST_F(LogTrackSlices, SavedAgainAndAgain_LeaksNoHandle) {
    Open(10);
    const auto handles = OpenHandles();
    for (int time = 0; time < 3; ++time) EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(OpenHandles(), handles);
}

TEST_F(LogTrackSlices, SavedWithNothingOpen_OpensThePointFile) {
    CTrackEx track(10);
    EXPECT_FALSE(track.SaveSliceData()) << "no name";
    track.SetFilePathEx("Log.dat", "LogHd.dat");
    EXPECT_TRUE(track.SaveSliceData());
    Points batch = NextFixes(2);
    EXPECT_TRUE(track.AppendEx(batch));
    EXPECT_EQ(Ring(), (RingState{0, 2}));
    EXPECT_FALSE(Exists(kHeadFile));
    track.CloseEx();
}

TEST_F(LogTrackSlices, SavedWhereNoFileCanBeMade_IsRefusedAndTheRecordingIsClosed) {
    Open(10);
    Record(2);
    SetProgramFolder(L"\\Missing");
    EXPECT_FALSE(m_track->SaveSliceData());
    EXPECT_FALSE(Record(1));
    EXPECT_EQ(m_track->GetPtCount(), 2u);
}

TEST_F(LogTrackSlices, BatchAfterSlicesWereClearedButNotSaved_CountsWithTheFile) {
    Open(20);
    RecordWithPauses({3, 4});
    m_track->ClearSliceTrace(0);
    Record(2);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{4, 2}));
    EXPECT_EQ(m_track->GetPtCount(), 9u);
    EXPECT_EQ(Ring(), (RingState{0, 9}));
}

TEST_F(LogTrackSlices, SavedLateAfterClearing_IsFilledUpWithZeros) {
    Open(20);
    RecordWithPauses({2, 3});
    m_track->ClearSliceTrace(0);
    Record(1);
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(BytesOf(kPointFile), described::RingFile(0, {Sent(2), Sent(3), Sent(4), Sent(5),
                                                           described::kZeros, described::kZeros}));
}

TEST_F(LogTrackSlices, SavedWithMoreSlicesThanCounted_IsAConsistentRing) {
    CTrackEx track;
    for (const TckPt& fix : NextFixes(3)) track.AppendPt(fix, false);
    track.DoSlice();
    EXPECT_EQ(track.GetPtCount(), 0u) << "points that were not recorded";
    track.SetFilePathEx("Log.dat", "LogHd.dat");
    EXPECT_TRUE(track.SaveSliceData());
    EXPECT_EQ(BytesOf(kPointFile), described::RingFile(0, {}));
    track.CloseEx();
}

// --- Cutting the own points ---

TEST_F(LogTrackSlices, OwnPoints_AreCutAndGivenAway) {
    CTrackEx track;
    for (const TckPt& fix : NextFixes(3)) track.AppendPt(fix, false);
    Pause(1800);
    track.AppendPt(NextFix(), false);
    track.DoSlice();
    EXPECT_EQ(track.GetSliceNum(), 2);
    EXPECT_EQ(track.GetSliceTrace(0)->GetPtList().size(), 3u);
    EXPECT_TRUE(track.GetPtList().empty());
    track.DoSlice();
    EXPECT_EQ(track.GetSliceNum(), 0) << "nothing left to cut";
}

// --- The newest points ---

class NewestPoints : public LogTrackSlices {
 protected:
    // Records one batch of points of these ages in seconds.
    void RecordAges(std::initializer_list<int> ages) {
        const auto now = static_cast<std::int32_t>(Now());
        Points batch;
        for (const int age : ages) {
            batch.push_back(TckPt{});
            batch.back().lTime = now - age;
            batch.back().dAltitude = age;
        }
        ASSERT_TRUE(m_track->AppendEx(batch));
    }
    std::vector<double> Within(int seconds) {
        Points out;
        m_track->GetTopPtLst(out, seconds);
        std::vector<double> ages;
        for (const TckPt& point : out) ages.push_back(point.dAltitude);
        return ages;
    }
};

TEST_F(NewestPoints, PointsUpToThatOld_AreGivenOldestFirstFromAllSlices) {
    Open(20);
    RecordAges({9000, 8000, 5000, 4000, 1000});
    EXPECT_EQ(m_track->GetSliceNum(), 3);
    EXPECT_EQ(Within(8500), (std::vector<double>{8000, 5000, 4000, 1000}));
    EXPECT_EQ(Within(4500), (std::vector<double>{4000, 1000}));
    EXPECT_EQ(Within(20000).size(), 5u);
}

TEST_F(NewestPoints, PointOfExactlyThatAge_IsGiven) {
    Open(20);
    RecordAges({100});
    const std::int32_t time = Remembered()[0].lTime;
    EXPECT_EQ(WithExactAge(time, [&](int age) { return Within(age).size(); }), 1u);
    EXPECT_EQ(WithExactAge(time, [&](int age) { return Within(age - 1).size(); }), 0u);
}

TEST_F(NewestPoints, NewestPointTwoMinutesOld_GivesNothingForAMinute) {
    Open(20);
    RecordAges({300, 120});
    EXPECT_EQ(Within(60), std::vector<double>{});
}

TEST_F(NewestPoints, FirstOlderPoint_EndsTheSearch) {
    Open(20);
    RecordAges({100, 5000, 200, 50});
    EXPECT_EQ(Within(1000), (std::vector<double>{200, 50}));
}

TEST_F(NewestPoints, FuturePoints_AreRecent) {
    Open(20);
    RecordAges({1000, -500, -1000});
    EXPECT_EQ(Within(0), (std::vector<double>{-500, -1000}));
    EXPECT_EQ(Within(-800), std::vector<double>{-1000});
}

TEST_F(NewestPoints, Output_IsAppendedTo) {
    Open(20);
    RecordAges({10});
    Points out(3);
    m_track->GetTopPtLst(out, 1000);
    EXPECT_EQ(out.size(), 4u);
    EXPECT_EQ(out.back().dAltitude, 10.0);
}

TEST_F(NewestPoints, WithoutPoints_NothingIsGiven) {
    Open(20);
    EXPECT_TRUE(Within(1000000).empty());
}

// --- The way back ---

class WayBack : public LogTrackSlices {
 protected:
    static constexpr double kDegreesPerMetre = 1.0 / 111320.0;

    // Points a kilometre apart towards the east, each so many metres off the line to the north.
    void RecordOffsets(std::initializer_list<double> metresNorth) {
        Points batch;
        for (const double offset : metresNorth) {
            TckPt point = NextFix();
            point.dLatitude = offset * kDegreesPerMetre;
            point.dLongitude = static_cast<double>(m_sent.size()) * 1000.0 * kDegreesPerMetre;
            batch.push_back(point);
        }
        ASSERT_TRUE(m_track->AppendEx(batch));
    }
    std::vector<int> Way(int level) {
        Points out(9);
        m_track->SimplifyAllTrackPtAndReverse(out, level);
        return TimesOf(out);
    }
};

TEST_F(WayBack, Recording_IsTurnedRoundAcrossItsSlices) {
    Open(20);
    RecordOffsets({0, 500});
    Pause(3600);
    RecordOffsets({0, 500, 0});
    const int second = m_sent[2].lTime - kFirstTime;
    EXPECT_EQ(Way(0), (std::vector<int>{second + 2, second + 1, second, 1, 0}));
}

TEST_F(WayBack, DeviationsBelow25Metres_AreThinnedOut) {
    Open(20);
    RecordOffsets({0, 20, 0, 60, 0});
    EXPECT_EQ(Way(0), (std::vector<int>{4, 3, 2, 0}));
}

TEST_F(WayBack, EachLevel_DoublesTheTolerance) {
    Open(20);
    RecordOffsets({0, 45, 0});
    EXPECT_EQ(Way(0), (std::vector<int>{2, 1, 0}));
    EXPECT_EQ(Way(1), (std::vector<int>{2, 0}));
}

TEST_F(WayBack, OneOrNoPoint_ReplacesTheOutput) {
    Open(20);
    EXPECT_EQ(Way(0), std::vector<int>{});
    Record(1);
    EXPECT_EQ(Way(0), std::vector<int>{0});
}

TEST_F(WayBack, Recording_IsLeftAsItWas) {
    Open(20);
    RecordOffsets({0, 20, 0});
    Way(0);
    EXPECT_TRUE(m_track->GetPtList().empty());
    EXPECT_EQ(SliceSizes(), std::vector<int>{3});
    EXPECT_EQ(m_track->GetPtCount(), 3u);
}

TEST_F(WayBack, ToleranceAfterwards_IsTwoMetres) {
    CTrackEx track;
    for (const double metres : {0.0, 10.0, 0.0}) {
        TckPt point = NextFix();
        point.dLatitude = metres * kDegreesPerMetre;
        point.dLongitude = static_cast<double>(m_sent.size()) * 1000.0 * kDegreesPerMetre;
        track.AppendPt(point, false);
    }
    track.SetSimplifyDis(1000.0);
    track.DoSlice();
    Points way;
    track.SimplifyAllTrackPtAndReverse(way, 0);
    EXPECT_EQ(way.size(), 2u) << "10 m are below 25 m";
    for (const TckPt& point : track.GetSliceTrace(0)->GetPtList()) track.AppendPt(point, false);
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtList().size(), 3u) << "10 m are above 2 m";
    track.CloseEx();
}
