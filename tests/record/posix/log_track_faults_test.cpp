// Storage that takes no more and files that change under an open recording: nothing crashes, and memory stays
// in step with what was accepted. On POSIX, where a process can be forbidden to let files grow.
#include "tests/record/log_track_fixture.h"
#include "tests/support/posix/full_device.h"

class LogTrackFaults : public LogTrackTest {
 protected:
    std::size_t FileSize() const { return BytesOf(kPointFile).size(); }
};

TEST_F(LogTrackFaults, DeviceFullFromTheStart_OpensAndRecordsInMemory) {
    {
        const FullDevice full(0);
        EXPECT_TRUE(Open(100));
        for (int batch = 0; batch < 5; ++batch) EXPECT_TRUE(Record(10));
        EXPECT_EQ(Remembered().size(), 50u);
        EXPECT_EQ(m_track->GetPtCount(), 50u);
        EXPECT_EQ(FileSize(), 0u);
    }
    EXPECT_TRUE(Record(3)) << "there is room again";
    EXPECT_EQ(Ring(), (RingState{0, 53}));
}

TEST_F(LogTrackFaults, DeviceFullInTheMiddle_LeavesTheRecordsThatWereThere) {
    Open(1000);
    Record(20);
    const std::string before = BytesOf(kPointFile);
    {
        const FullDevice full(before.size());
        for (int batch = 0; batch < 4; ++batch) Record(200);
        EXPECT_EQ(m_track->GetPtCount(), Remembered().size());
        EXPECT_EQ(BytesOf(kPointFile), before);
        Close();
    }
    EXPECT_TRUE(Open(1000));
    EXPECT_EQ(Remembered().size(), 20u);
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Ring(), (RingState{0, 23}));
}

TEST_F(LogTrackFaults, DeviceFullForLong_KeepsMemoryWithinTheCapacity) {
    Open(100);
    Record(20);
    const FullDevice full(FileSize());
    for (int batch = 0; batch < 40; ++batch) Record(30);
    EXPECT_EQ(Remembered().size(), 100u);
    EXPECT_EQ(m_track->GetPtCount(), 100u);
}

TEST_F(LogTrackFaults, RoomAgain_TheNextBatchBringsWhatWasInMemory) {
    Open(100);
    Record(20);
    {
        const FullDevice full(FileSize());
        Record(30);
        Record(10);
    }
    EXPECT_TRUE(Record(5));
    EXPECT_EQ(Ring(), (RingState{0, 65}));
    const std::vector<int> times = Times();
    EXPECT_TRUE(Open(100));
    EXPECT_EQ(Times(), times);
}

TEST_F(LogTrackFaults, RoomAgainWhenItIsClosed_ClosingBringsWhatWasInMemory) {
    Open(100);
    Record(20);
    {
        const FullDevice full(FileSize());
        Record(30);
    }
    Close();
    EXPECT_TRUE(Open(100));
    EXPECT_EQ(Remembered().size(), 50u);
}

TEST_F(LogTrackFaults, RoomAgainButNoOverwriting_TakesNoMoreThanTheCapacity) {
    Open(20, false);
    Record(8);
    {
        const FullDevice full(FileSize());
        Record(10);
        EXPECT_TRUE(Record(6)) << "two of them";
        EXPECT_FALSE(Record(1));
    }
    EXPECT_FALSE(Record(1));
    EXPECT_EQ(Remembered().size(), 20u);
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(Ring(), (RingState{0, 20}));
}

// The oldest records give way only for a batch that has room at the end.
TEST_F(LogTrackFaults, FullWhereTheRingTurnsFirst_LeavesTheOldestRecords) {
    Open(10);
    Record(8);
    const std::string before = BytesOf(kPointFile);
    {
        const FullDevice full(before.size());
        EXPECT_TRUE(Record(4));
        EXPECT_EQ(BytesOf(kPointFile), before);
    }
    EXPECT_TRUE(Record(1));
    EXPECT_EQ(Times(), (std::vector<int>{3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST_F(LogTrackFaults, FullAtTheNextStartWhereTheRingTurnsFirst_LeavesTheOldestRecords) {
    Open(10);
    Record(8);
    const std::string before = BytesOf(kPointFile);
    Record(4);
    const std::string note = BytesOf("\\App\\Log.dat.redo");
    Close();
    Write(kPointFile, before);
    Write("\\App\\Log.dat.redo", note);
    const FullDevice full(before.size());
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(Remembered().size(), 8u);
    EXPECT_EQ(BytesOf(kPointFile), before);
}

// The recording goes on in memory; the damaged file is kept.
TEST_F(LogTrackFaults, DamagedFileAndNoRoom_IsSalvagedIntoMemory) {
    std::string records;
    for (const TckPt& fix : NextFixes(20)) records += described::Record(fix);
    Write(kPointFile, records);
    {
        const FullDevice full(100);
        EXPECT_TRUE(Open(100));
        EXPECT_EQ(Remembered().size(), 20u);
        EXPECT_TRUE(Record(5));
        EXPECT_EQ(Remembered().size(), 25u);
        EXPECT_EQ(BytesOf(kBackup), records);
    }
    EXPECT_TRUE(Record(5));
    EXPECT_EQ(Ring(), (RingState{0, 30}));
}

// What has no place on the storage until the end is gone with the memory, and must not be counted any more.
TEST_F(LogTrackFaults, DeviceFullAndThenOpenedAgain_CountsWhatTheFileHolds) {
    Open(100);
    Record(20);
    {
        const FullDevice full(FileSize());
        Record(30);
        Record(30);
        EXPECT_TRUE(m_track->OpenEx());
    }
    EXPECT_TRUE(Record(30));
    EXPECT_EQ(m_track->GetPtCount(), 50u);
    EXPECT_EQ(Remembered().size(), 50u);
    EXPECT_EQ(Ring(), (RingState{0, 50}));
}

// The next start has no more room than the kill left.
TEST_F(LogTrackFaults, DeviceFullAtTheNextStart_TakesATornAppendBack) {
    Open(1000);
    Record(20);
    const std::string before = BytesOf(kPointFile);
    Record(30);
    const std::string note = BytesOf("\\App\\Log.dat.redo");
    Close();
    std::string torn = before;
    torn[2] = 50;
    Write(kPointFile, torn);
    Write("\\App\\Log.dat.redo", note);
    {
        const FullDevice full(before.size() + 100);
        EXPECT_TRUE(Open(1000));
        EXPECT_EQ(Remembered().size(), 20u);
        Close();
    }
    EXPECT_EQ(BytesOf(kPointFile), before);
}

TEST_F(LogTrackFaults, SlicesSavedOnAFullDevice_AreRefusedAndTheFileStaysAsItWas) {
    Open(1000);
    Record(20);
    const std::string before = BytesOf(kPointFile);
    {
        const FullDevice full(100);
        EXPECT_FALSE(m_track->SaveSliceData());
    }
    EXPECT_EQ(BytesOf(kPointFile), before);
    EXPECT_TRUE(Record(1)) << "the recording goes on";
    EXPECT_EQ(Ring(), (RingState{0, 21}));
}

TEST_F(LogTrackFaults, FullRing_NeedsNoMoreRoom) {
    Open(50);
    Record(49);
    Record(1);
    const FullDevice full(FileSize());
    for (int batch = 0; batch < 20; ++batch) EXPECT_TRUE(Record(7));
    EXPECT_EQ(Remembered().size(), 50u);
    const std::vector<int> newest = Times();
    EXPECT_TRUE(Open(50));
    EXPECT_EQ(Times().back(), newest.back());
}

TEST_F(LogTrackFaults, RingEmptiedBySomebodyElse_RefusesBatchesUntilItIsOpenedAgain) {
    Open(10);
    Record(3);
    std::filesystem::resize_file(OnDisk(kPointFile), 0);
    int start = 77;
    EXPECT_FALSE(m_track->GetTmpTrackStart(start));
    EXPECT_EQ(start, 77);
    CTrackMangSet::Instance()->SetTmpTkIsSaveInFull(true);
    EXPECT_FALSE(m_track->IsNeedSaveAllTmpTrk(100));
    EXPECT_FALSE(Record(2));
    EXPECT_EQ(m_track->GetPtCount(), 3u);
    EXPECT_TRUE(m_track->SaveSliceData()) << "memory still has the points";
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(Ring(), (RingState{0, 5}));
}

TEST_F(LogTrackFaults, HeaderSpoiltBySomebodyElse_RefusesBatches) {
    Open(10);
    Record(3);
    std::string spoilt = BytesOf(kPointFile);
    spoilt.replace(0, 4, described::Field(9) + described::Field(3));
    Write(kPointFile, spoilt);
    EXPECT_FALSE(Record(2));
    EXPECT_EQ(m_track->GetPtCount(), 3u);
    EXPECT_EQ(BytesOf(kPointFile), spoilt);
}

TEST_F(LogTrackFaults, FileDeletedWhileOpen_RecordsOnUntilItIsClosed) {
    Open(10);
    Record(3);
    std::filesystem::remove(OnDisk(kPointFile));
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(m_track->GetPtCount(), 5u);
    EXPECT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(Ring(), (RingState{0, 5}));
}
