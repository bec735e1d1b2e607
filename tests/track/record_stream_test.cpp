// The record stream: 96 header bytes, the count and the raw points, written and read at an open stream.
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/device.h"
#include "tests/support/seed.h"
#include "tests/track/track_fixture.h"
#include "track/geodesy.h"

namespace {

const Points kThreeFixes{At(47.0, 11.0, 1000), At(47.1, 11.0, 1010), At(47.1, 11.1, 1020)};
const TrackHeader kHeader{"Karwendel", 1, 0x00112233, 1000, 1020, 18000.25, 4.5e7};

Points AnyPoints(std::size_t count, std::mt19937& random) {
    Points pts;
    for (std::size_t i = 0; i < count; ++i) pts.push_back(AnyBytes(random));
    return pts;
}

std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

// Loads the bytes into a fresh track.
struct Loaded {
    explicit Loaded(const std::string& bytes) {
        TemporaryStream stream(bytes);
        result = track.Load(stream.Get());
    }
    OpenTrack track;
    bool result;
};

// A field is the stored one when all of it was read, the old one when nothing of it was.
template <typename Field>
void ExpectField(Field now, Field stored, Field old, std::size_t offset, std::size_t bytesRead) {
    if (bytesRead >= offset + sizeof(Field)) {
        EXPECT_EQ(now, stored) << "field at " << offset;
    } else if (bytesRead <= offset) {
        EXPECT_EQ(now, old) << "field at " << offset;
    }
}

}  // namespace

TEST(RecordStreamSave, NullStream_IsFalse) { EXPECT_FALSE(OpenTrack().Save(nullptr)); }

TEST(RecordStreamSave, WholeTrack_IsByteForByteAsDescribed) {
    OpenTrack track = TrackOf(kThreeFixes);
    track.TakeHeader(kHeader);
    TemporaryStream stream;
    EXPECT_TRUE(track.Save(stream.Get()));
    EXPECT_EQ(stream.Bytes(), StreamBytes(kHeader, kThreeFixes));
}

TEST(RecordStreamSave, NoPoints_Is100Bytes) {
    OpenTrack track;
    EXPECT_EQ(track.Stream(), HeaderBytes(TrackHeader{}) + Zeros(4));
    EXPECT_EQ(track.Stream().size(), 100u);
}

TEST(RecordStreamSave, TenThousandPoints_AreWritten) {
    std::mt19937 random(Seed(141));
    const Points pts = AnyPoints(10000, random);
    EXPECT_EQ(TrackOf(pts).Stream(), StreamBytes(TrackHeader{}, pts));
}

TEST(RecordStreamSave, OnePointMore_LeavesTheHeaderAlone) {
    OpenTrack track = TrackOf(Points(10001, At(1, 2, 3)));
    TemporaryStream stream;
    EXPECT_TRUE(track.Save(stream.Get()));
    EXPECT_EQ(stream.Bytes(), HeaderBytes(TrackHeader{}));
}

TEST(RecordStreamSave, Statistics_AreTheCachedOnesNotComputed) {
    OpenTrack track = TrackOf(kThreeFixes);
    EXPECT_EQ(track.Stream(), StreamBytes(TrackHeader{}, kThreeFixes));
}

TEST(RecordStreamSave, Area_IsWrittenAsItsMagnitude) {
    OpenTrack track = TrackOf({At(10, 10), At(12, 11), At(10, 12)});
    track.Calculate(true);
    ASSERT_LT(AidCalArea(track.GetPtList()), 0);
    EXPECT_EQ(track.Header().area, -AidCalArea(track.GetPtList()));
}

TEST(RecordStreamSave, Name_IsCutTo32BytesWithoutTerminator) {
    for (const std::size_t length : {31u, 32u, 33u, 40u}) {
        OpenTrack track;
        track.SetName(std::string(length, 'n').c_str());
        EXPECT_EQ(track.Stream().substr(32, 32), (ByteString().Text(std::string(length, 'n'), 32).Bytes()))
            << length;
        EXPECT_EQ(track.Stream().size(), 100u);
    }
}

TEST(RecordStreamSave, Name_IsWrittenAsItsBytesAreNotItsTitle) {
    OpenTrack track;
    track.SetName("title");
    track.TakeHeader({"\xD6\xD0\x80", 1, 0, 0, 0, 0, 0});
    EXPECT_EQ(track.Stream().substr(32, 32), "\xD6\xD0\x80" + Zeros(29));
}

TEST(RecordStreamSave, TimesBefore1970_AreFourBytesEach) {
    OpenTrack track;
    track.TakeHeader({"", 1, 0, -2, -1, 0, 0});
    EXPECT_EQ(track.Stream().substr(72, 8), "\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
}

TEST(RecordStreamSave, Visibility_IsOneOrZeroAfterSetting) {
    OpenTrack track;
    track.SetVisible(false);
    EXPECT_EQ(track.Stream().substr(64, 4), Zeros(4));
    track.SetVisible(true);
    EXPECT_EQ(track.Stream().substr(64, 4), (ByteString().U32(1).Bytes()));
}

TEST(RecordStreamSave, GoesToTheStreamsBeginningAndCutsNothingBehind) {
    OpenTrack track = TrackOf(kThreeFixes);
    const std::string expected = track.Stream();
    TemporaryStream stream(std::string(1000, 'o'));
    stream.Seek(500);
    track.Save(stream.Get());
    EXPECT_EQ(stream.Bytes(), expected + std::string(1000 - expected.size(), 'o'));
}

TEST(RecordStreamSave, TwiceOnOneStream_IsTheSameAsOnce) {
    OpenTrack track = TrackOf(kThreeFixes);
    TemporaryStream stream;
    track.Save(stream.Get());
    track.Save(stream.Get());
    EXPECT_EQ(stream.Bytes(), track.Stream());
}

TEST(RecordStreamSave, WriteError_IsNotLookedFor) {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "readonly", "untouched");
    std::FILE* stream = std::fopen((folder.Path() / "readonly").string().c_str(), "rb");
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(TrackOf(kThreeFixes).Save(stream));
    std::fclose(stream);
    EXPECT_EQ(ReadFile(folder.Path() / "readonly"), "untouched");
}

TEST(RecordStreamSave, LeavesTheTrackAsItWas) {
    OpenTrack track = TrackRemembering(kThreeFixes, kHeader);
    track.Stream();
    EXPECT_EQ(track.GetPtList(), kThreeFixes);
    EXPECT_EQ(track.Header(), kHeader);
    EXPECT_EQ(track.GetLength(), kHeader.length);
}

TEST(RecordStreamHeader, Saved_IsInTheFileBeforeTheStreamCloses) {
    const TemporaryFolder folder;
    std::FILE* stream = std::fopen((folder.Path() / "head").string().c_str(), "wb+");
    ASSERT_NE(stream, nullptr);
    OpenTrack track;
    track.TakeHeader(kHeader);
    track.SaveHeadInfo(stream);
    EXPECT_EQ(ReadFile(folder.Path() / "head"), HeaderBytes(kHeader));
    std::fclose(stream);
}

TEST(RecordStreamHeader, SavedToNullStream_IsHarmless) {
    OpenTrack track;
    track.SaveHeadInfo(nullptr);
    EXPECT_EQ(track.Header(), TrackHeader{});
}

TEST(RecordStreamHeader, Loaded_IsTheStoredOne) {
    OpenTrack track;
    track.TakeHeader(kHeader);
    EXPECT_EQ(track.Header(), kHeader);
    EXPECT_EQ(track.GetName(), "Karwendel");
    EXPECT_EQ(track.GetColor(), 0x00112233u);
    EXPECT_TRUE(track.GetVisible());
}

TEST(RecordStreamHeader, Loaded_MovesTheStreamBy96Bytes) {
    OpenTrack track;
    TemporaryStream stream(StreamBytes(kHeader, kThreeFixes));
    EXPECT_TRUE(track.LoadHeadInfo(stream.Get()));
    EXPECT_EQ(stream.Position(), 96);
    EXPECT_EQ(track.GetPtCount(), 0u);
}

TEST(RecordStreamHeader, WrongMagic_ConsumesItsBytesOnly) {
    OpenTrack track;
    TemporaryStream stream(std::string(200, 'Q'));
    EXPECT_FALSE(track.LoadHeadInfo(stream.Get()));
    EXPECT_EQ(stream.Position(), 32);
}

TEST(RecordStreamHeader, AnyVisibility_IsVisibleAndComesBackAsItWas) {
    for (const std::uint32_t visible : {0x100u, 2u, 0x80000000u, 0xFFFFFFFFu}) {
        OpenTrack track;
        track.TakeHeader({"", visible, 0, 0, 0, 0, 0});
        EXPECT_TRUE(track.GetVisible()) << visible;
        EXPECT_EQ(track.Header().visible, visible);
    }
}

TEST(RecordStreamHeader, HiddenTrack_StaysHidden) {
    OpenTrack track;
    track.TakeHeader({"", 0, 0, 0, 0, 0, 0});
    EXPECT_FALSE(track.GetVisible());
}

TEST(RecordStreamHeader, LargeColourAndNegativeTimes_KeepTheirSign) {
    OpenTrack track = TrackRemembering({}, {"", 1, 0xFFFFFFFF, -2, -1, 0, 0});
    EXPECT_EQ(track.GetColor(), 0xFFFFFFFFUL);
    EXPECT_EQ(track.GetStartTime(), -2);
    EXPECT_EQ(track.GetEndTime(), -1);
}

TEST(RecordStreamHeader, NameOf32Characters_IsReadWhole) {
    OpenTrack track;
    track.TakeHeader({std::string(32, 'n'), 1, 0, 0, 0, 0, 0});
    EXPECT_EQ(track.GetName(), std::string(32, 'n'));
}

TEST(RecordStreamHeader, NameWithZeroInside_EndsThere) {
    std::string bytes = HeaderBytes(kHeader);
    bytes[32 + 3] = '\0';
    TemporaryStream stream(bytes);
    OpenTrack track;
    track.LoadHeadInfo(stream.Get());
    EXPECT_EQ(track.GetName(), "Kar");
}

TEST(RecordStreamHeader, Loaded_LeavesTitleAndFlagAlone) {
    OpenTrack flagged = TrackOf(kThreeFixes), plain = TrackOf(kThreeFixes);
    flagged.SetName("title");
    flagged.Calculate(true);
    flagged.TakeHeader(kHeader);
    plain.TakeHeader(kHeader);
    EXPECT_EQ(flagged.Title(), "title");
    EXPECT_EQ(flagged.GetLength(), kHeader.length);
    EXPECT_EQ(plain.GetLength(), AidCalLength(kThreeFixes));
}

TEST(RecordStreamLoad, NullStream_IsFalseAndChangesNothing) {
    OpenTrack track = TrackRemembering(kThreeFixes, kHeader);
    EXPECT_FALSE(track.Load(static_cast<void*>(nullptr)));
    track.LoadPtListInfo(nullptr);
    EXPECT_EQ(track.Stream(), StreamBytes(kHeader, kThreeFixes));
}

TEST(RecordStreamLoad, WholeTrack_IsTheStoredOne) {
    Loaded loaded(StreamBytes(kHeader, kThreeFixes));
    EXPECT_TRUE(loaded.result);
    EXPECT_EQ(loaded.track.GetPtList(), kThreeFixes);
    EXPECT_EQ(loaded.track.Header(), kHeader);
}

TEST(RecordStreamLoad, ReplacesTheTracksOwnPoints) {
    OpenTrack track = TrackOf(Points(50, At(9, 9, 9)));
    TemporaryStream stream(StreamBytes(kHeader, kThreeFixes));
    EXPECT_TRUE(track.Load(stream.Get()));
    EXPECT_EQ(track.GetPtList(), kThreeFixes);
}

TEST(RecordStreamLoad, StartsWhereTheStreamStands) {
    TemporaryStream stream("skipped" + StreamBytes(kHeader, kThreeFixes) + "next");
    stream.Seek(7);
    OpenTrack track;
    EXPECT_TRUE(track.Load(stream.Get()));
    EXPECT_EQ(track.GetPtList(), kThreeFixes);
    EXPECT_EQ(stream.Position(), 7 + 100 + 3 * 48);
}

TEST(RecordStreamLoad, WrongMagic_IsFalseAndTheTrackStays) {
    const std::string good = StreamBytes(kHeader, kThreeFixes);
    for (const std::size_t wrongAt : {0u, 10u, 19u, 20u}) {
        std::string bytes = good;
        bytes[wrongAt] ^= 1;
        OpenTrack track = TrackRemembering({At(9, 9, 9)}, {"Old", 1, 7, 8, 9, 10, 11});
        const std::string before = track.Stream();
        TemporaryStream stream(bytes);
        EXPECT_FALSE(track.Load(stream.Get())) << wrongAt;
        EXPECT_EQ(track.Stream(), before) << wrongAt;
    }
}

TEST(RecordStreamLoad, MagicFollowedByMoreText_IsRejected) {
    const std::string good = StreamBytes(kHeader, kThreeFixes);
    EXPECT_FALSE(Loaded(std::string("Qarvolent Trace H1.0x") + good.substr(21)).result);
    EXPECT_FALSE(Loaded(std::string("Qarvolent Trace H1.0xxxxxxxxxxxx") + good.substr(32)).result);
}

TEST(RecordStreamLoad, MissingCount_IsNoPoints) {
    OpenTrack track = TrackOf(kThreeFixes);
    TemporaryStream stream(HeaderBytes(kHeader));
    EXPECT_TRUE(track.Load(stream.Get()));
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_EQ(track.Header(), kHeader);
}

TEST(RecordStreamLoad, NegativeOrTooLargeCount_IsNoPoints) {
    for (const std::int32_t count : {-1, INT32_MIN, 10001, INT32_MAX}) {
        Loaded loaded(HeaderBytes(kHeader) + ByteString().I32(count).Bytes() + PointListBytes(kThreeFixes));
        EXPECT_TRUE(loaded.result);
        EXPECT_EQ(loaded.track.GetPtCount(), 0u) << count;
    }
}

TEST(RecordStreamLoad, TrackOf10001PointsSaved_HasStatisticsButNoPoints) {
    OpenTrack large = TrackOf(Points(10001, At(1, 2, 3)));
    large.TakeHeader(kHeader);
    Loaded loaded(large.Stream());
    EXPECT_TRUE(loaded.result);
    EXPECT_EQ(loaded.track.GetPtCount(), 0u);
    EXPECT_EQ(loaded.track.Header(), kHeader);
}

TEST(RecordStreamLoad, NameOf40Characters_ComesBackAs32) {
    OpenTrack saved;
    saved.SetName("0123456789012345678901234567890123456789");
    EXPECT_EQ(Loaded(saved.Stream()).track.GetName(), "01234567890123456789012345678901");
}

TEST(RecordStreamLoad, NothingIsComputed) {
    Loaded loaded(StreamBytes(TrackHeader{}, kThreeFixes));
    EXPECT_EQ(loaded.track.Header(), TrackHeader{});
}

// A power cut may end a stream anywhere. What was read whole is taken, what was not keeps its value.
TEST(RecordStreamLoad, CutAtAnyLength_TakesWhatIsWhole) {
    const std::string whole = StreamBytes(kHeader, kThreeFixes);
    const TrackHeader old{"Old", 5, 6, 7, 8, 9.5, 10.5};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        OpenTrack track = TrackOf({At(9, 9, 9)});
        track.TakeHeader(old);
        TemporaryStream stream(whole.substr(0, length));
        ASSERT_EQ(track.Load(stream.Get()), length >= 20);
        const TrackHeader now = track.Header();
        EXPECT_EQ(now.name,
                  length < 20 ? "Old" : std::string("Karwendel").substr(0, length < 32 ? 0 : length - 32));
        ExpectField(now.visible, kHeader.visible, old.visible, 64, length);
        ExpectField(now.color, kHeader.color, old.color, 68, length);
        ExpectField(now.startTime, kHeader.startTime, old.startTime, 72, length);
        ExpectField(now.endTime, kHeader.endTime, old.endTime, 76, length);
        ExpectField(now.length, kHeader.length, old.length, 80, length);
        ExpectField(now.area, kHeader.area, old.area, 88, length);
    }
}

TEST(RecordStreamLoad, PointsCutAtAnyLength_KeepTheWholeOnes) {
    const std::string whole = StreamBytes(kHeader, kThreeFixes);
    for (std::size_t length = 20; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        Loaded loaded(whole.substr(0, length));
        const std::size_t complete = length < 100 ? 0 : (length - 100) / 48;
        ASSERT_EQ(loaded.track.GetPtCount(), length < 100 ? 0u : 3u)
            << "the stored count holds, the rest is zero";
        for (std::size_t i = 0; i < complete; ++i) EXPECT_EQ(loaded.track.GetPtList()[i], kThreeFixes[i]);
        for (std::size_t i = complete + 1; i < loaded.track.GetPtCount(); ++i)
            EXPECT_EQ(loaded.track.GetPtList()[i], TckPt{});
    }
}

TEST(RecordStreamRoundTrip, AnyTrack_ComesBackByteForByte) {
    std::mt19937 random(Seed(142));
    for (int round = 0; round < 200; ++round) {
        TrackHeader header{"",
                           static_cast<std::uint32_t>(random()),
                           static_cast<std::uint32_t>(random()),
                           static_cast<std::int32_t>(random()),
                           static_cast<std::int32_t>(random()),
                           Between(-1e6, 1e6, random),
                           Between(0, 1e9, random)};
        for (std::size_t i = random() % 33; i > 0; --i) header.name += static_cast<char>(1 + random() % 255);
        const std::string bytes = StreamBytes(header, AnyPoints(random() % 50, random));
        Loaded loaded(bytes);
        ASSERT_TRUE(loaded.result);
        ASSERT_EQ(loaded.track.Stream(), bytes) << "seed 142, round " << round;
    }
}

TEST(RecordStreamRoundTrip, TenThousandPoints_ComeBack) {
    std::mt19937 random(Seed(143));
    const Points pts = AnyPoints(10000, random);
    Loaded loaded(StreamBytes(kHeader, pts));
    EXPECT_TRUE(loaded.result);
    EXPECT_EQ(loaded.track.GetPtList(), pts);
}
