// What a handle writes: the header into its document, the points over its beginning, a new file name, nothing
// at all.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "tests/library/library_fixture.h"

namespace {

// The record stream's fields, by their places in the file.
std::uint32_t Word(const std::string& stream, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t i = 4; i-- > 0;) word = word << 8 | static_cast<unsigned char>(stream.at(offset + i));
    return word;
}
std::string NameIn(const std::string& stream) { return stream.substr(32, 32).c_str(); }

constexpr std::size_t kColor = 68, kStartTime = 72, kEndTime = 76, kCount = 96, kPoints = 100, kPointSize = 48;

}  // namespace

using TrackSaving = LibraryTest;

TEST_F(TrackSaving, Header_GoesIntoTheDocument) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    walk->SetName("Evening ride");
    walk->SetColor(0x0000FF00);
    walk->SetVisible(false);
    ASSERT_TRUE(walk->SaveTrackData());
    const StoredTrack saved = Stored("walk");
    EXPECT_EQ(saved.name, "Evening ride");
    EXPECT_EQ(saved.color, "65280");
    EXPECT_EQ(saved.visible, "0");
    EXPECT_EQ(saved.number, "3");
    EXPECT_EQ(saved.length, "1234.500000");
    EXPECT_EQ(saved.area, "77.250000");
    EXPECT_EQ(saved.startTime, "2014-05-01T10:00:00Z");
    EXPECT_EQ(saved.endTime, "2014-05-01T11:00:00Z");
}

TEST_F(TrackSaving, Header_LeavesThePointsOfAllSegments) {
    const StoredTrack walk{.segments = {{{"1.500000", "2.000000", "5.000000", "2014-05-01T10:00:00Z"}},
                                        {{"-3.250000", "4.000000", "6.000000", "2014-05-01T10:00:09Z"},
                                         {"5.000000", "-6.125000", "7.000000", "2014-05-01T10:00:10Z"}}}};
    Store("walk", walk);
    const auto handle = Handle("walk");
    handle->Load(nullptr);
    ASSERT_TRUE(handle->SaveTrackData());
    EXPECT_EQ(PointsIn(BytesOf(PathOf("walk"))), PointsIn(TextOf(walk)));
}

TEST_F(TrackSaving, NegativeAreaOfTheFile_IsWrittenAsItsMagnitude) {
    Store("walk", {.area = "-12.500000"});
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    ASSERT_TRUE(walk->SaveTrackData());
    EXPECT_EQ(Stored("walk").area, "12.500000");
}

TEST_F(TrackSaving, HeaderNeverRead_IsWrittenAsItIsAndShown) {
    Store("walk", {.visible = "0"});
    ASSERT_TRUE(Handle("walk")->SaveTrackData());
    const StoredTrack saved = Stored("walk");
    EXPECT_EQ(saved.visible, "1");
    EXPECT_EQ(saved.name, "");
    EXPECT_EQ(saved.number, "");
    EXPECT_EQ(saved.color, "0");
    EXPECT_EQ(saved.startTime, "");
    EXPECT_EQ(saved.segments.front().size(), 3u);
}

TEST_F(TrackSaving, LongDisplayName_IsWrittenWithItsFirst32Characters) {
    const std::string stem(40, 'x');
    Store(stem, {.name = ""});
    const auto track = Handle(stem);
    EXPECT_EQ(track->GetName(), stem);
    ASSERT_TRUE(track->SaveTrackData());
    EXPECT_EQ(Stored(stem).name, std::string(32, 'x'));
}

TEST_F(TrackSaving, Metadata_IsTheLocalTimeAndReplacesWhatWasThere) {
    std::string text = TextOf({});
    text.insert(text.find("<trk>"), "<name>Old</name><desc>old</desc><author>somebody</author>");
    Write(PathOf("walk"), text);
    const auto stamp = [] {
        std::string time = LocalTimeText();
        time[10] = 'T';
        return time.substr(0, 13) + ":" + time.substr(13, 2) + ":" + time.substr(15) + "Z";
    };
    const std::string before = stamp();
    ASSERT_TRUE(Handle("walk")->SaveTrackData());
    const std::string after = stamp();
    const std::string saved = BytesOf(PathOf("walk"));
    const std::string metadata = saved.substr(0, saved.find("<trk>"));
    const std::string time = Inside(metadata, "time").value();
    EXPECT_LE(before, time);
    EXPECT_LE(time, after);
    EXPECT_EQ(Inside(metadata, "name"), "track" + time);
    EXPECT_FALSE(Inside(metadata, "desc"));
    EXPECT_FALSE(Inside(metadata, "author"));
}

TEST_F(TrackSaving, WriteTime_IsTheUtcClockAfterASuccess) {
    Store("walk");
    const auto walk = Handle("walk");
    const long before = static_cast<long>(Now());
    ASSERT_TRUE(walk->SaveTrackData());
    EXPECT_LE(before, walk->GetLstWriteTime());
    EXPECT_LE(walk->GetLstWriteTime(), static_cast<long>(Now()));
}

TEST_F(TrackSaving, UnreadableFile_IsNotWritten) {
    Write(PathOf("broken"), "<gpx><trk>");
    const auto broken = Handle("broken");
    broken->SetName("Name");
    broken->SetLstWriteTime(1000);
    EXPECT_FALSE(broken->SaveTrackData());
    EXPECT_EQ(BytesOf(PathOf("broken")), "<gpx><trk>");
    EXPECT_EQ(broken->GetLstWriteTime(), 1000);
}

TEST_F(TrackSaving, MissingFile_IsNotMade) {
    EXPECT_FALSE(Handle("missing")->SaveTrackData());
    EXPECT_FALSE(Exists(PathOf("missing")));
    EXPECT_FALSE(CTrackProxy().SaveTrackData());
}

TEST_F(TrackSaving, HeaderOfAnotherPath_GoesToTheHandlesOwn) {
    Store("walk");
    Store("other", {.segments = {{{"9.000000", "9.000000", "", ""}}}});
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    const std::string other = BytesOf(PathOf("other"));
    ASSERT_TRUE(TrackProxyInside::SaveHeadInfo(*walk, PathOf("other")));
    EXPECT_EQ(Stored("walk").segments.front().size(), 1u);
    EXPECT_EQ(BytesOf(PathOf("other")), other);
}

// --- The points as a record stream ---

TEST_F(TrackSaving, Points_GoOverTheBeginningOfTheFileAsARecordStream) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->SimplyTrack();
    const std::string tail(400, '~');
    Write(PathOf("walk"), tail);
    walk->SaveTrackPtLst();
    const std::string saved = BytesOf(PathOf("walk"));
    ASSERT_EQ(saved.size(), 400u);
    EXPECT_STREQ(saved.c_str(), "Qarvolent Trace H1.0");
    EXPECT_EQ(NameIn(saved), "walk");
    EXPECT_EQ(Word(saved, kColor), 255u);
    EXPECT_EQ(Word(saved, kStartTime), static_cast<std::uint32_t>(SecondsOf(2014, 5, 1, 10, 0, 0)));
    EXPECT_EQ(Word(saved, kCount), 3u);
    EXPECT_EQ(saved.substr(kPoints + 3 * kPointSize), tail.substr(kPoints + 3 * kPointSize));
}

TEST_F(TrackSaving, PointsAsARecordStream_SetTheHeaderAndStayLoaded) {
    Store("walk", {.number = "9", .color = "7", .visible = "0"});
    const auto walk = Handle("walk");
    walk->SimplyTrack();
    walk->SaveTrackPtLst();
    EXPECT_TRUE(TrackProxyInside::IsLoaded(*walk));
    EXPECT_EQ(TrackProxyInside::FileName(*walk), "walk");
    EXPECT_EQ(TrackProxyInside::PointCount(*walk), 3u);
    EXPECT_EQ(walk->GetColor(), 7u);
    EXPECT_EQ(TrackProxyInside::Visibility(*walk), 0);
}

TEST_F(TrackSaving, PointsAsARecordStream_HaveTheStatisticsOfThePoints) {
    Store("walk", {.startTime = "2001-01-01T00:00:00Z", .endTime = "2002-01-01T00:00:00Z"});
    const auto walk = Handle("walk");
    walk->SimplyTrack();
    walk->SaveTrackPtLst();
    const std::string saved = BytesOf(PathOf("walk"));
    EXPECT_EQ(Word(saved, kStartTime), static_cast<std::uint32_t>(SecondsOf(2014, 5, 1, 10, 0, 0)));
    EXPECT_EQ(Word(saved, kEndTime), static_cast<std::uint32_t>(SecondsOf(2014, 5, 1, 11, 0, 0)));
}

TEST_F(TrackSaving, RecordStreamReadAsADocument_IsRefusedAndLeftAlone) {
    Store("walk", {.color = "10"});  // a line feed, among the first bytes of the stream
    const auto walk = Handle("walk");
    walk->SimplyTrack();
    walk->SaveTrackPtLst();
    const std::string stream = BytesOf(PathOf("walk"));
    ASSERT_EQ(Word(stream, kColor), 10u);
    EXPECT_FALSE(Handle("walk")->Load(nullptr));
    EXPECT_FALSE(Handle("walk")->SaveTrackData());
    EXPECT_EQ(BytesOf(PathOf("walk")), stream);
}

TEST_F(TrackSaving, PointsOfAMissingFile_MakeNoneAndDoNoHarm) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->SimplyTrack();
    std::filesystem::remove(OnDisk(PathOf("walk")));
    walk->SaveTrackPtLst();
    EXPECT_FALSE(Exists(PathOf("walk")));
    EXPECT_EQ(TrackProxyInside::PointCount(*walk), 3u);
}

TEST_F(TrackSaving, PointsNotLoaded_LeaveTheFileAlone) {
    Store("walk");
    const std::string before = BytesOf(PathOf("walk"));
    Handle("walk")->SaveTrackPtLst();
    EXPECT_EQ(BytesOf(PathOf("walk")), before);
}

TEST_F(TrackSaving, SaveUnderAName_WritesARecordStreamInTheFolderTrack) {
    Store("walk");
    std::filesystem::create_directories(OnDisk("\\App\\Track"));
    const auto walk = Handle("walk");
    ASSERT_TRUE(TrackProxyInside::Save(*walk, "Copy"));
    const std::string saved = BytesOf("\\App\\Track\\Copy.gpx");
    EXPECT_EQ(saved.size(), kPoints + 3 * kPointSize);
    EXPECT_EQ(NameIn(saved), "Copy");
    EXPECT_STREQ(walk->GetTrackPath(), "\\App\\Track\\Copy.gpx");
    EXPECT_EQ(TrackProxyInside::FileName(*walk), "Copy");
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    EXPECT_TRUE(Exists(PathOf("walk")));
}

TEST_F(TrackSaving, SaveUnderANameWithoutTheFolder_Fails) {
    Store("walk");
    const auto walk = Handle("walk");
    EXPECT_FALSE(TrackProxyInside::Save(*walk, "Copy"));
    EXPECT_STREQ(walk->GetTrackPath(), "\\App\\Track\\Copy.gpx");
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
}

// --- The file's name, and the file itself ---

TEST_F(TrackSaving, NewFileName_MovesTheFile) {
    Store("walk");
    const std::string content = BytesOf(PathOf("walk"));
    const auto walk = Handle("walk");
    walk->SetTrkFileName("run");
    EXPECT_EQ(walk->GetTrackPath(), PathOf("run"));
    EXPECT_EQ(walk->GetTrkFileName(), "run");
    EXPECT_EQ(BytesOf(PathOf("run")), content);
    EXPECT_FALSE(Exists(PathOf("walk")));
}

TEST_F(TrackSaving, NewFileName_TakesThePlaceOfTheOldOne) {
    Store("walk");
    const auto walk = Handle("walk");
    ASSERT_EQ(walk->GetTrkFileName(), "walk");
    walk->SetTrkFileName("run");
    EXPECT_EQ(walk->GetTrkFileName(), "run");
}

TEST_F(TrackSaving, NewFileName_LeavesTheDisplayNameAlone) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->GetName();
    walk->SetTrkFileName("run");
    EXPECT_EQ(walk->GetName(), "Morning ride");
}

TEST_F(TrackSaving, NewFileNameInTheRoot_StaysInTheRoot) {
    Write("\\walk.gpx", TextOf({}));
    CTrackProxy walk("\\walk.gpx");
    walk.SetTrkFileName("run");
    EXPECT_STREQ(walk.GetTrackPath(), "\\run.gpx");
    EXPECT_TRUE(Exists("\\run.gpx"));
}

TEST_F(TrackSaving, FileNameThatExists_ChangesNothing) {
    Store("walk");
    Store("run", {.name = "Run"});
    const std::string walkBefore = BytesOf(PathOf("walk")), runBefore = BytesOf(PathOf("run"));
    const auto walk = Handle("walk");
    walk->SetTrkFileName("run");
    EXPECT_EQ(walk->GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(walk->GetTrkFileName(), "walk");
    EXPECT_EQ(BytesOf(PathOf("walk")), walkBefore);
    EXPECT_EQ(BytesOf(PathOf("run")), runBefore);
}

TEST_F(TrackSaving, NoFileName_ChangesNothing) {
    Store("walk");
    const auto walk = Handle("walk");
    walk->SetTrkFileName(nullptr);
    EXPECT_EQ(walk->GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track"), std::vector<std::string>{"walk.gpx"});
}

TEST_F(TrackSaving, FileNameThatNoFileMayHave_ChangesNothing) {
    Store("walk");
    const auto walk = Handle("walk");
    for (const char* name : {"a?b", "a*b", "a:b", "no\\folder"}) walk->SetTrkFileName(name);
    EXPECT_EQ(walk->GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track"), std::vector<std::string>{"walk.gpx"});
}

TEST_F(TrackSaving, FileNameTooLongForAPath_ChangesNothing) {
    Store("walk");
    const auto walk = Handle("walk");
    for (std::size_t length : {250u, 256u, 257u, 300u}) walk->SetTrkFileName(std::string(length, 'n').c_str());
    EXPECT_EQ(walk->GetTrackPath(), PathOf("walk"));
    EXPECT_TRUE(Exists(PathOf("walk")));
}

TEST_F(TrackSaving, FileNameOfAMissingFile_ChangesNothing) {
    const auto missing = Handle("missing");
    missing->SetTrkFileName("run");
    EXPECT_EQ(missing->GetTrackPath(), PathOf("missing"));
    EXPECT_FALSE(Exists(PathOf("run")));
}

TEST_F(TrackSaving, FolderWhoseCharactersEndInABackslashByte_IsNotSplit) {
    const std::string folder = "\\\x81\x5C";  // one two-byte character, whose second byte is a backslash's
    std::filesystem::create_directories(OnDisk("\\\u4E57"));
    WriteFile(OnDisk("\\\u4E57\\walk.gpx"), TextOf({}));
    CTrackProxy walk((folder + "\\walk.gpx").c_str());
    EXPECT_EQ(walk.GetTrkFileName(), "walk");
    walk.SetTrkFileName("\x81\x5C");
    EXPECT_EQ(walk.GetTrackPath(), folder + "\\\x81\x5C.gpx");
    EXPECT_TRUE(std::filesystem::exists(OnDisk("\\\u4E57\\\u4E57.gpx")));
}

TEST_F(TrackSaving, DestoryData_DeletesTheFileAndKeepsTheHandlesValues) {
    Store("walk");
    Store("other");
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    walk->DestoryData();
    EXPECT_FALSE(Exists(PathOf("walk")));
    EXPECT_TRUE(Exists(PathOf("other")));
    EXPECT_EQ(walk->GetTrackPath(), PathOf("walk"));
    EXPECT_EQ(walk->GetName(), "Morning ride");
    EXPECT_EQ(walk->GetPtCount(), 3u);
}

TEST_F(TrackSaving, DestoryDataWithoutFile_DoesNoHarm) {
    CTrackProxy().DestoryData();
    Handle("missing")->DestoryData();
    std::filesystem::create_directories(OnDisk(PathOf("folder")));
    Handle("folder")->DestoryData();
    EXPECT_TRUE(Exists(PathOf("folder")));
}
