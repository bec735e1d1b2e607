// What the recording finds and leaves when it is opened and closed. Damaged files: log_track_recovery_test.cpp.
#include "tests/record/log_track_fixture.h"

using described::kZeros;

using described::RingFile;

namespace {

// The head file: magic text, name, visibility, colour, times, length, area.
std::string HeadFile(const std::string& name, int visible, std::uint32_t color) {
    std::string bytes = "Qarvolent Trace H1.0";
    bytes.resize(32);
    bytes += name;
    bytes.resize(64);
    bytes += described::Field(static_cast<unsigned>(visible)) + described::Field(0);
    bytes += described::Field(color & 0xFFFF) + described::Field(color >> 16);
    bytes.resize(96);
    return bytes;
}

}  // namespace

class LogTrackOpening : public LogTrackTest {
 protected:
    void WriteRing(unsigned start, const std::vector<TckPt>& slots) {
        std::vector<std::string> records;
        for (const TckPt& slot : slots) records.push_back(described::Record(slot));
        Write(kPointFile, RingFile(start, records));
    }
    TckPt FixAt(int seconds, double altitude = 0.0) {
        TckPt fix{};
        fix.dLatitude = 47.0;
        fix.dLongitude = 8.0;
        fix.dAltitude = altitude;
        fix.lTime = kFirstTime + seconds;
        return fix;
    }
    std::vector<double> Altitudes() const {
        std::vector<double> altitudes;
        for (const TckPt& point : Remembered()) altitudes.push_back(point.dAltitude);
        return altitudes;
    }
};

TEST_F(LogTrackOpening, MissingFiles_AreMade) {
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(BytesOf(kPointFile), std::string(4, '\0'));
    EXPECT_EQ(BytesOf(kHeadFile), HeadFile("", 1, 0x00FF0000));
    EXPECT_EQ(m_track->GetPtCount(), 0u);
    EXPECT_EQ(m_track->GetSliceNum(), 0);
}

TEST_F(LogTrackOpening, EmptyPointFile_GetsAnEmptyRing) {
    Write(kPointFile, "");
    EXPECT_TRUE(Open(10));
    EXPECT_EQ(BytesOf(kPointFile), std::string(4, '\0'));
}

TEST_F(LogTrackOpening, WithoutNames_IsRefused) {
    CTrackEx track;
    EXPECT_FALSE(track.OpenEx());
    track.SetFilePathEx("Log.dat", "");
    EXPECT_FALSE(track.OpenEx());
    track.SetFilePathEx("", "LogHd.dat");
    EXPECT_FALSE(track.OpenEx());
    EXPECT_FALSE(Exists(kPointFile) || Exists(kHeadFile));
}

TEST_F(LogTrackOpening, ThreeRecords_AreSortedByTime) {
    WriteRing(0, {FixAt(20), FixAt(0), FixAt(10)});
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(Times(), (std::vector<int>{0, 10, 20}));
    EXPECT_EQ(m_track->GetPtCount(), 3u);
}

TEST_F(LogTrackOpening, PointsKeepEveryByteOfTheirRecords) {
    const Points sent = NextFixes(3);
    WriteRing(0, {sent[0], sent[1], sent[2]});
    ASSERT_TRUE(Open(10));
    const Points remembered = Remembered();
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(RawBytes(remembered[i]), Sent(i));
}

TEST_F(LogTrackOpening, WrappedRing_IsReadFromItsStart) {
    WriteRing(2, {FixAt(0, 3), FixAt(0, 4), FixAt(0, 0), FixAt(0, 1), FixAt(0, 2)});
    ASSERT_TRUE(Open(5));
    EXPECT_EQ(Altitudes(), (std::vector<double>{0, 1, 2, 3, 4})) << "equal times keep the ring's order";
}

TEST_F(LogTrackOpening, StartBehindTheLastRecord_IsTheBeginning) {
    WriteRing(2, {FixAt(0, 0), FixAt(0, 1)});
    ASSERT_TRUE(Open(5));
    EXPECT_EQ(Altitudes(), (std::vector<double>{0, 1}));
}

TEST_F(LogTrackOpening, ConsistentFile_IsNotWritten) {
    WriteRing(1, {FixAt(30), FixAt(10), FixAt(20)});
    const std::string before = BytesOf(kPointFile);
    ASSERT_TRUE(Open(3));
    Close();
    EXPECT_EQ(BytesOf(kPointFile), before);
    EXPECT_FALSE(Exists(kBackup));
}

TEST_F(LogTrackOpening, RecordThatFailsItsCheck_StaysAPointOfZerosInASliceOfItsOwn) {
    std::string damaged = described::Record(FixAt(1));
    damaged[3] = static_cast<char>(damaged[3] ^ 0x10);
    Write(kPointFile, RingFile(0, {described::Record(FixAt(0)), damaged, described::Record(FixAt(2))}));
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(m_track->GetPtCount(), 3u);
    EXPECT_EQ(SliceSizes(), (std::vector<int>{1, 2}));
    EXPECT_EQ(RawBytes(Remembered()[0]), kZeros);
    EXPECT_EQ(m_track->GetStartTime(), 0);
}

TEST_F(LogTrackOpening, TimesBefore1970_ComeBeforePointsOfZeros) {
    TckPt early{};
    early.lTime = -5;
    Write(kPointFile, RingFile(0, {kZeros, described::Record(early)}));
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(Remembered()[0].lTime, -5);
    EXPECT_EQ(m_track->GetStartTime(), -5);
}

TEST_F(LogTrackOpening, GapOfTwoHours_GivesTwoSlices) {
    WriteRing(0, {FixAt(0), FixAt(7200), FixAt(7201)});
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(SliceSizes(), (std::vector<int>{1, 2}));
    EXPECT_EQ(m_track->GetStartTime(), kFirstTime);
    EXPECT_EQ(m_track->GetEndTime(), kFirstTime + 7201);
}

TEST_F(LogTrackOpening, GapOf1799Seconds_GivesOneSliceAnd1800GivesTwo) {
    WriteRing(0, {FixAt(0), FixAt(1799), FixAt(1799 + 1800)});
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(SliceSizes(), (std::vector<int>{2, 1}));
}

TEST_F(LogTrackOpening, Slices_AreCalculatedTracksOfTheDefaultColour) {
    WriteRing(0, {FixAt(0), FixAt(60)});
    CTrack::SetDefaultColor(0x00112233);
    ASSERT_TRUE(Open(10));
    CTrack::SetDefaultColor(0x00FF0000);
    CTrack slice(*m_track->GetSliceTrace(0));
    EXPECT_EQ(slice.GetColor(), 0x00112233u);
    EXPECT_EQ(slice.GetEndTime(), kFirstTime + 60);
}

TEST_F(LogTrackOpening, TenThousandRecords_AreRead) {
    const Points fixes = NextFixes(10000);
    WriteRing(0, {fixes.begin(), fixes.end()});
    ASSERT_TRUE(Open(10000));
    EXPECT_EQ(m_track->GetPtCount(), 10000u);
    EXPECT_EQ(SliceSizes(), std::vector<int>{10000});
}

TEST_F(LogTrackOpening, ConsistencyBound_IsTenThousandWhateverTheCapacity) {
    WriteRing(0, std::vector<TckPt>(20, FixAt(0)));
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(m_track->GetPtCount(), 20u) << "twice the capacity";
    WriteRing(0, std::vector<TckPt>(10001, FixAt(0)));
    ASSERT_TRUE(Open(20000));
    EXPECT_EQ(m_track->GetPtCount(), 0u);
    EXPECT_TRUE(Exists(kBackup));
}

// --- The head file ---

TEST_F(LogTrackOpening, HeadFile_GivesNameVisibilityAndColour) {
    Write(kHeadFile, HeadFile("Over the pass", 0, 0x00ABCDEF));
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(m_track->GetName(), "Over the pass");
    EXPECT_FALSE(m_track->GetVisible());
    EXPECT_EQ(m_track->GetColor(), 0x00ABCDEFu);
}

TEST_F(LogTrackOpening, HeadFile_GivesStatisticsThatAreSavedBackAsTheyWere) {
    std::string head = HeadFile("Over the pass", 1, 0x00ABCDEF);
    for (std::size_t i = 72; i < head.size(); ++i) head[i] = static_cast<char>(i % 64);  // times, length, area
    Write(kHeadFile, head);
    ASSERT_TRUE(Open(10));
    Record(3);
    m_track->SetVisible(false);
    m_track->SavePropertyData();
    head[64] = 0;
    EXPECT_EQ(BytesOf(kHeadFile), head);
}

TEST_F(LogTrackOpening, HeadFileThatIsNone_IsLeftAloneAndIgnored) {
    for (const std::string& content : {std::string(), std::string("Qarvolent"), std::string(200, 'x')}) {
        Write(kHeadFile, content);
        EXPECT_TRUE(Open(10));
        EXPECT_EQ(m_track->GetName(), "");
        EXPECT_EQ(m_track->GetColor(), 0x00FF0000u);
        Close();
        EXPECT_EQ(BytesOf(kHeadFile), content);
    }
}

TEST_F(LogTrackOpening, PropertiesSaved_AreThereAfterARestart) {
    ASSERT_TRUE(Open(10));
    m_track->SetName("Commute");
    m_track->SetColor(0x00010203);
    m_track->SetVisible(false);
    EXPECT_EQ(BytesOf(kHeadFile), HeadFile("", 1, 0x00FF0000)) << "not before it is asked for";
    m_track->SavePropertyData();
    EXPECT_EQ(BytesOf(kHeadFile), HeadFile("Commute", 0, 0x00010203));
    ASSERT_TRUE(Open(10));
    EXPECT_EQ(m_track->GetName(), "Commute");
}

TEST_F(LogTrackOpening, PropertiesOfAClosedRecording_AreNotSaved) {
    ASSERT_TRUE(Open(10));
    m_track->CloseEx();
    m_track->SetName("Closed");
    m_track->SavePropertyData();
    EXPECT_EQ(BytesOf(kHeadFile), HeadFile("", 1, 0x00FF0000));
}

TEST_F(LogTrackOpening, Appending_DoesNotTouchTheHeadFile) {
    ASSERT_TRUE(Open(10));
    m_track->SetName("Unsaved");
    Record(3);
    EXPECT_EQ(BytesOf(kHeadFile), HeadFile("", 1, 0x00FF0000));
}

// --- Opening again, closing ---

TEST_F(LogTrackOpening, OpenTwice_KeepsEveryPointAndLeaksNoHandle) {
    ASSERT_TRUE(Open(10));
    Record(7);
    const auto handles = OpenHandles();
    for (int again = 0; again < 5; ++again) EXPECT_TRUE(m_track->OpenEx());
    EXPECT_EQ(OpenHandles(), handles);
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(Record(2));
    EXPECT_EQ(Ring(), (RingState{0, 9}));
}

TEST_F(LogTrackOpening, ReloadedAfterItsMemoryWasCleared_HasEveryPointAgain) {
    ASSERT_TRUE(Open(10));
    Record(7);
    m_track->ClearAllSliceTrace();
    EXPECT_TRUE(m_track->OpenEx());
    EXPECT_EQ(m_track->GetPtCount(), 7u);
}

TEST_F(LogTrackOpening, Closing_ForgetsTheSlicesAndMayBeDoneTwice) {
    ASSERT_TRUE(Open(10));
    Record(3);
    EXPECT_TRUE(m_track->CloseEx());
    EXPECT_EQ(m_track->GetPtCount(), 0u);
    EXPECT_EQ(m_track->GetSliceNum(), 0);
    EXPECT_FALSE(Record(1));
    EXPECT_TRUE(m_track->CloseEx());
}

TEST_F(LogTrackOpening, NeverOpened_MayBeClosed) { EXPECT_TRUE(CTrackEx().CloseEx()); }

TEST_F(LogTrackOpening, Destructor_ClosesBothFiles) {
    const auto handles = OpenHandles();
    {
        CTrackEx track(10);
        track.SetFilePathEx("Log.dat", "LogHd.dat");
        ASSERT_TRUE(track.OpenEx());
    }
    EXPECT_EQ(OpenHandles(), handles);
}

TEST_F(LogTrackOpening, Destructor_LeavesTheSlicesToWhoeverHoldsThem) {
    auto track = std::make_unique<CTrackEx>(static_cast<unsigned short>(10));
    track->SetFilePathEx("Log.dat", "LogHd.dat");
    ASSERT_TRUE(track->OpenEx());
    Points batch = NextFixes(3);
    ASSERT_TRUE(track->AppendEx(batch));
    const std::unique_ptr<const CTrack> slice(track->GetSliceTrace(0));
    track.reset();
    EXPECT_EQ(slice->GetPtList().size(), 3u);
}

TEST_F(LogTrackOpening, Copy_HasTheTracksValuesButNeitherFilesNorSlices) {
    ASSERT_TRUE(Open(10));
    m_track->SetName("Original");
    Record(3);
    CTrackEx copy(*m_track);
    EXPECT_EQ(copy.GetName(), "Original");
    EXPECT_EQ(copy.GetSliceNum(), 0);
    EXPECT_EQ(copy.GetPtCount(), 0u);
    Points batch = NextFixes(1);
    EXPECT_FALSE(copy.AppendEx(batch));
    EXPECT_EQ(m_track->GetSliceNum(), 1);
}

// --- Places that cannot be used ---

TEST_F(LogTrackOpening, FolderInThePlaceOfThePointFile_IsRefusedAndLeaksNothing) {
    std::filesystem::create_directory(OnDisk(kPointFile));
    const auto handles = OpenHandles();
    for (int attempt = 0; attempt < 3; ++attempt) EXPECT_FALSE(Open(10));
    for (int attempt = 0; attempt < 3; ++attempt) EXPECT_FALSE(m_track->OpenEx());
    EXPECT_FALSE(Record(1));
    Close();
    EXPECT_EQ(OpenHandles(), handles);
    std::filesystem::remove(OnDisk(kPointFile));
    EXPECT_TRUE(Open(10));
}

TEST_F(LogTrackOpening, HalfOpenedRecording_SavesNoProperties) {
    std::filesystem::create_directory(OnDisk(kPointFile));
    EXPECT_FALSE(Open(10));
    m_track->SetName("Unsaved");
    m_track->SavePropertyData();
    EXPECT_EQ(BytesOf(kHeadFile), HeadFile("", 1, 0x00FF0000));
}

TEST_F(LogTrackOpening, FolderInThePlaceOfTheHeadFile_IsRefused) {
    std::filesystem::create_directory(OnDisk(kHeadFile));
    EXPECT_FALSE(Open(10));
    EXPECT_FALSE(Exists(kPointFile));
}

TEST_F(LogTrackOpening, MissingProgramFolder_IsRefused) {
    SetProgramFolder(L"\\Missing");
    EXPECT_FALSE(Open(10));
    EXPECT_FALSE(Record(1));
}

TEST_F(LogTrackOpening, ProgramFolderBelowAPlainFile_IsRefused) {
    Write("\\Plain", "text");
    SetProgramFolder(L"\\Plain");
    EXPECT_FALSE(Open(10));
}

TEST_F(LogTrackOpening, ReadOnlyPointFile_IsRefusedAndStays) {
    WriteRing(0, {FixAt(0)});
    const std::string before = BytesOf(kPointFile);
    std::filesystem::permissions(OnDisk(kPointFile), std::filesystem::perms::owner_read);
    EXPECT_FALSE(Open(10));
    EXPECT_EQ(BytesOf(kPointFile), before);
}

TEST_F(LogTrackOpening, PathsTooLong_AreRefused) {
    SetProgramFolder(L"\\" + std::wstring(254, L'x'));
    EXPECT_FALSE(Open(10));
    m_track->SetFilePathEx(std::string(300, 'n').c_str(), "LogHd.dat");
    EXPECT_FALSE(m_track->OpenEx());
}
