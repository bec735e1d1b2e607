// What an append leaves in the ring file and in memory. Every small ring: ring_plan_test.cpp; random ones:
// log_track_random_test.cpp; slices: log_track_slices_test.cpp.
#include "tests/record/log_track_fixture.h"

using described::kZeros;
using described::RingFile;

class LogTrackAppending : public LogTrackTest {
 protected:
    // A ring of this capacity, full and wrapped, whose oldest point is in slot `start`.
    void OpenWrapped(int capacity, int start) {
        Open(capacity);
        Record(capacity - 1);
        Record(1);
        Record(start);
        ASSERT_EQ(Ring(), (RingState{start, capacity}));
    }
    std::vector<std::string> Slots(std::size_t count) const {
        std::vector<std::string> slots;
        for (std::size_t slot = 0; slot < count; ++slot) slots.push_back(Slot(slot));
        return slots;
    }
    // The records of these fixes; -1 stands for a record of zeros.
    std::vector<std::string> Fixes(const std::vector<int>& numbers) const {
        std::vector<std::string> records;
        for (const int number : numbers)
            records.push_back(number < 0 ? kZeros : Sent(static_cast<std::size_t>(number)));
        return records;
    }
    std::string File() const { return BytesOf(kPointFile); }
};

TEST_F(LogTrackAppending, FirstBatch_IsHeaderAndRecords) {
    Open(10);
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(File(), RingFile(0, Fixes({0, 1, 2})));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(m_track->GetPtCount(), 3u);
}

TEST_F(LogTrackAppending, SecondBatch_FollowsTheFirst) {
    Open(10);
    Record(3);
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(File(), RingFile(0, Fixes({0, 1, 2, 3, 4})));
    EXPECT_EQ(m_track->GetPtCount(), 5u);
}

TEST_F(LogTrackAppending, CallersPoints_GetTheirCheckSequence) {
    Open(10);
    Points batch = NextFixes(2);
    ASSERT_TRUE(m_track->AppendEx(batch));
    EXPECT_EQ(RawBytes(batch[0]), Sent(0));
    EXPECT_EQ(RawBytes(batch[1]), Sent(1));
    EXPECT_EQ(RawBytes(Remembered()[1]), Sent(1));
}

TEST_F(LogTrackAppending, BatchOfNoneOrOfTheCapacity_IsRefusedUntouched) {
    Open(10);
    EXPECT_FALSE(Record(0));
    Points batch = NextFixes(10);
    const Points before = batch;
    EXPECT_FALSE(m_track->AppendEx(batch));
    EXPECT_TRUE(SamePoints(batch, before));
    EXPECT_EQ(File(), RingFile(0, {}));
    EXPECT_EQ(m_track->GetPtCount(), 0u);
}

TEST_F(LogTrackAppending, BatchOfOneBelowTheCapacity_IsTaken) {
    Open(10);
    EXPECT_TRUE(Record(9));
    EXPECT_EQ(Ring(), (RingState{0, 9}));
}

TEST_F(LogTrackAppending, RingWithoutRoomForAnyBatch_RefusesAll) {
    for (const int capacity : {0, 1}) {
        Open(capacity);
        EXPECT_FALSE(Record(1));
    }
}

TEST_F(LogTrackAppending, ClosedRecording_RefusesAndLeavesThePoints) {
    CTrackEx track(10);
    Points batch = NextFixes(1);
    const Points before = batch;
    EXPECT_FALSE(track.AppendEx(batch));
    EXPECT_TRUE(SamePoints(batch, before));
}

TEST_F(LogTrackAppending, RingFilledExactly_HasNotWrapped) {
    Open(10);
    Record(6);
    EXPECT_TRUE(Record(4));
    EXPECT_EQ(File(), RingFile(0, Fixes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9})));
}

// --- Overwriting ---

TEST_F(LogTrackAppending, BatchAcrossTheEnd_ZeroesTheTail) {
    Open(10000);
    Record(9998);
    EXPECT_TRUE(Record(5));
    EXPECT_EQ(Ring(), (RingState{3, 10000}));
    EXPECT_EQ(Slot(9998), Sent(9998));
    EXPECT_EQ(Slot(9999), Sent(9999));
    EXPECT_EQ(Slots(6), Fixes({10000, 10001, 10002, -1, -1, 5}));
    EXPECT_EQ(File().size(), 4u + 48u * 10000u);
}

TEST_F(LogTrackAppending, BatchAcrossTheEnd_KeepsInMemoryWhatTheZerosHitInTheFile) {
    Open(10);
    Record(8);
    Record(4);
    EXPECT_EQ(Slots(10), Fixes({10, 11, -1, -1, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(Times(), (std::vector<int>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(m_track->GetPtCount(), 10u);
    EXPECT_EQ(m_track->GetSliceNum(), 1);
}

TEST_F(LogTrackAppending, FullRingThatHasNotWrapped_BeginsAgainAtSlotZeroWithoutZeros) {
    Open(5);
    Record(4);
    Record(1);
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(Ring(), (RingState{2, 5}));
    EXPECT_EQ(Slots(5), Fixes({5, 6, 2, 3, 4}));
    EXPECT_EQ(Times(), (std::vector<int>{2, 3, 4, 5, 6}));
}

TEST_F(LogTrackAppending, WrappedRing_IsWrittenAtItsStart) {
    OpenWrapped(10, 4);
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Ring(), (RingState{7, 10}));
    EXPECT_EQ(Slots(10), Fixes({10, 11, 12, 13, 14, 15, 16, 7, 8, 9}));
    EXPECT_EQ(Times().front(), 7);
}

TEST_F(LogTrackAppending, WrappedRingFilledExactlyToItsEnd_LosesAsManyOfItsFirstSlotsToZeros) {
    OpenWrapped(10, 7);
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Ring(), (RingState{0, 10}));
    EXPECT_EQ(Slots(10), Fixes({-1, -1, -1, 13, 14, 15, 16, 17, 18, 19}));
    EXPECT_EQ(Times().front(), 10);
}

TEST_F(LogTrackAppending, WrappedRingAcrossTheEnd_ZeroesTheTail) {
    OpenWrapped(10, 8);
    EXPECT_TRUE(Record(5));
    EXPECT_EQ(Ring(), (RingState{3, 10}));
    EXPECT_EQ(Slots(10), Fixes({20, 21, 22, -1, -1, 15, 16, 17, 18, 19}));
}

TEST_F(LogTrackAppending, LongBatch_ZeroesEvenPointsThatItJustWrote) {
    OpenWrapped(10, 4);
    EXPECT_TRUE(Record(9));  // 6 points to the end, 3 from the front, then 6 records of zeros
    EXPECT_EQ(Ring(), (RingState{3, 10}));
    EXPECT_EQ(Slots(10), Fixes({20, 21, 22, -1, -1, -1, -1, -1, -1, 19}));
    EXPECT_EQ(Times(), (std::vector<int>{13, 14, 15, 16, 17, 18, 19, 20, 21, 22}));
}

TEST_F(LogTrackAppending, RoundAfterRound_FileAndMemoryHoldTheSameNewestPoints) {
    Open(7);
    for (int batch = 0; batch < 50; ++batch) ASSERT_TRUE(Record(1));
    EXPECT_EQ(Times(), (std::vector<int>{43, 44, 45, 46, 47, 48, 49}));
    EXPECT_EQ(Ring().count, 7);
    const Points before = Remembered();
    Open(7);
    EXPECT_EQ(m_track->GetPtCount(), 7u);
    EXPECT_EQ(RawBytes(Remembered().back()), RawBytes(before.back()));
}

// --- Not overwriting ---

TEST_F(LogTrackAppending, BatchThatOverfillsARingThatMustNotOverwrite_IsCut) {
    Open(10000, false);
    Record(9998);
    EXPECT_TRUE(Record(5));
    EXPECT_EQ(Ring(), (RingState{0, 10000}));
    EXPECT_EQ(Slot(9998), Sent(9998));
    EXPECT_EQ(Slot(9999), Sent(9999));
    EXPECT_EQ(File().size(), 4u + 48u * 10000u);
    EXPECT_EQ(Times().size(), 10000u);
    EXPECT_EQ(Times().back(), 9999);
}

TEST_F(LogTrackAppending, PauseInTheDroppedPart_MakesNoSlice) {
    Open(10, false);
    Record(8);
    Points batch = NextFixes(2);
    Pause(4000);
    batch.push_back(NextFix());
    EXPECT_TRUE(m_track->AppendEx(batch));
    EXPECT_EQ(SliceSizes(), std::vector<int>{10});
}

TEST_F(LogTrackAppending, FullRingThatMustNotOverwrite_RefusesButStamps) {
    Open(5, false);
    Record(4);
    Record(3);
    const std::string before = File();
    Points batch = NextFixes(2);
    EXPECT_FALSE(m_track->AppendEx(batch));
    EXPECT_EQ(File(), before);
    EXPECT_EQ(RawBytes(batch[0]), Sent(7));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST_F(LogTrackAppending, OverwritingMayBeSwitchedWhileOpen) {
    Open(5, false);
    Record(4);
    Record(1);
    EXPECT_FALSE(Record(1));
    m_track->SetOverWrt(true);
    EXPECT_TRUE(Record(1));
    EXPECT_EQ(Ring(), (RingState{1, 5}));
}

// --- Rings made with another capacity ---

TEST_F(LogTrackAppending, RingThatTurnedUnderASmallerCapacity_IsWrittenAnewAndGoesOn) {
    Open(6);
    Record(5);
    Record(1);
    Record(2);
    ASSERT_EQ(Ring(), (RingState{2, 6}));
    EXPECT_TRUE(Open(50));
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Ring(), (RingState{0, 9}));
    EXPECT_TRUE(Open(50));
    EXPECT_EQ(Times(), (std::vector<int>{2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST_F(LogTrackAppending, WrappedRingThatIsNotFull_MovesItsStartOnly) {
    OpenWrapped(5, 2);
    const std::vector<std::string> before = Slots(5);
    Open(10, false);
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Ring(), (RingState{5, 10}));
    EXPECT_EQ(Slots(5), before);
    EXPECT_EQ(m_track->GetPtCount(), 5u);
}

TEST_F(LogTrackAppending, RingLargerThanTheCapacity_GivesUpItsOldestPoints) {
    Open(20);
    Record(17);
    Open(10);
    EXPECT_EQ(m_track->GetPtCount(), 17u);
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Ring(), (RingState{3, 10}));
    EXPECT_EQ(File().size(), 4u + 48u * 10u);
    EXPECT_EQ(Times(), (std::vector<int>{10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
    Open(10);
    EXPECT_EQ(Times(), (std::vector<int>{10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
}

TEST_F(LogTrackAppending, RingLargerThanTheCapacityThatMustNotOverwrite_IsFull) {
    Open(20);
    Record(17);
    const std::string before = File();
    Open(10, false);
    EXPECT_FALSE(Record(3));
    EXPECT_EQ(File(), before);
    EXPECT_EQ(m_track->GetPtCount(), 17u);
}

// --- What the ring says of itself ---

TEST_F(LogTrackAppending, RingStart_IsReadFromTheFile) {
    OpenWrapped(10, 4);
    int start = -1;
    EXPECT_TRUE(m_track->GetTmpTrackStart(start));
    EXPECT_EQ(start, 4);
    EXPECT_TRUE(Record(2)) << "reading does not disturb writing";
    EXPECT_TRUE(m_track->GetTmpTrackStart(start));
    EXPECT_EQ(start, 6);
}

TEST_F(LogTrackAppending, RingStartOfAClosedRecording_IsNotKnown) {
    int start = 77;
    EXPECT_FALSE(CTrackEx().GetTmpTrackStart(start));
    EXPECT_EQ(start, 77);
}

class TripInTheRing : public LogTrackAppending {
 protected:
    static void SaveInFull(bool saveInFull, int tripStart) {
        CTrackMangSet::Instance()->SetTmpTkIsSaveInFull(saveInFull);
        CTrackMangSet::Instance()->SetTmpTkStartPos(tripStart);
    }
};

TEST_F(TripInTheRing, NotAskedToSaveInFull_NeverNeedsIt) {
    OpenWrapped(10, 4);
    SaveInFull(false, 5);
    EXPECT_FALSE(m_track->IsNeedSaveAllTmpTrk(5));
}

TEST_F(TripInTheRing, ClosedRecording_NeverNeedsIt) {
    SaveInFull(true, 0);
    EXPECT_FALSE(CTrackEx(10).IsNeedSaveAllTmpTrk(100));
}

TEST_F(TripInTheRing, FullRing_NeedsItWhenTheBatchReachesTheTrip) {
    OpenWrapped(10, 4);
    SaveInFull(true, 7);
    EXPECT_FALSE(m_track->IsNeedSaveAllTmpTrk(2));
    EXPECT_TRUE(m_track->IsNeedSaveAllTmpTrk(3));
    SaveInFull(true, 1);
    EXPECT_FALSE(m_track->IsNeedSaveAllTmpTrk(6));
    EXPECT_TRUE(m_track->IsNeedSaveAllTmpTrk(7));
}

TEST_F(TripInTheRing, RingThatIsNotFull_NeedsItAfterTheWrap) {
    Open(10);
    Record(6);
    SaveInFull(true, 0);
    EXPECT_FALSE(m_track->IsNeedSaveAllTmpTrk(3));
    EXPECT_TRUE(m_track->IsNeedSaveAllTmpTrk(4));
}
