// CTrack: a new track, its header, its list of points, copying and assigning.
// Statistics: tests/track/statistics_test.cpp. Deleting points: tests/track/deletion_test.cpp.
#include "track/track.h"

#include <gtest/gtest.h>

#include "tests/track/track_fixture.h"

namespace {

const Points kThreeFixes{At(47.0, 11.0, 1000), At(47.1, 11.0, 1010), At(47.1, 11.1, 1020)};

// A header that no computation from kThreeFixes gives, so that it shows where it went.
const TrackHeader kPlanted{"Planted", 1, 0x00112233, 77, 88, 1234.5, 678.5};

Points PointsOf(const CTrack& track) { return track.GetPtList(); }

// A line with one point 3 m off it: 2 m of simplify distance keep that point, 5 m do not.
const Points kBentByThreeMetres{At(0, 0), At(3 * 8.983152841197925e-6, 0.01), At(0, 0.02)};

}  // namespace

TEST(Track, New_HoldsNothing) {
    OpenTrack track;
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_EQ(track.GetLength(), 0.0);
    EXPECT_EQ(track.GetArea(), 0.0);
    EXPECT_EQ(track.GetStartTime(), 0);
    EXPECT_EQ(track.GetEndTime(), 0);
    EXPECT_EQ(track.GetName(), "");
    EXPECT_EQ(track.Title(), "");
}

TEST(Track, New_IsVisibleInTheDefaultColourAndNotSaved) {
    OpenTrack track;
    EXPECT_TRUE(track.GetVisible());
    EXPECT_EQ(track.Header().visible, 1u);
    EXPECT_EQ(track.GetColor(), 0x00FF0000u);
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_TRUE(track.bEpurate());
}

TEST(Track, New_ThinsWithTwoMetres) {
    OpenTrack track = TrackOf(kBentByThreeMetres);
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST(Track, SetDefaultColor_IsTheColourOfTracksMadeFromThenOn) {
    CTrack before;
    CTrack::SetDefaultColor(0x000000FF);
    CTrack after;
    before.AppendPt(kThreeFixes[0], false);
    EXPECT_EQ(before.GetColor(), 0x00FF0000u);
    EXPECT_EQ(after.GetColor(), 0x000000FFu);
    before.Init();
    EXPECT_EQ(before.GetColor(), 0x000000FFu);
    CTrack::SetDefaultColor(0x00FF0000);
}

TEST(Track, SetName_SetsTheTitleToo) {
    OpenTrack track;
    track.SetName("Zugspitze");
    EXPECT_EQ(track.GetName(), "Zugspitze");
    EXPECT_EQ(track.Title(), "Zugspitze");
}

TEST(Track, SetName_TakesAnyLengthAndAnyCharacter) {
    const std::string name = std::string(500, 'x') + "\\/:*?\"<>|\xD6\xD0";
    CTrack track;
    track.SetName(name.c_str());
    EXPECT_EQ(track.GetName(), name);
}

TEST(Track, SetName_WithTheTracksOwnName_KeepsIt) {
    OpenTrack track;
    track.SetName("a name long enough to live outside of the string object");
    track.SetName(track.GetName().c_str());
    EXPECT_EQ(track.GetName(), "a name long enough to live outside of the string object");
    EXPECT_EQ(track.Title(), track.GetName());
}

TEST(Track, GetName_ByTheInterface_IsTheSameReference) {
    CTrack track;
    track.SetName("one");
    ITrack& seenAsITrack = track;
    EXPECT_EQ(&seenAsITrack.GetName(), &track.GetName());
    EXPECT_EQ(seenAsITrack.GetName(), "one");
}

TEST(Track, Colour_KeepsAll32BitsUnsigned) {
    CTrack track;
    track.SetColor(0xFF0000FFUL);
    EXPECT_EQ(track.GetColor(), 0xFF0000FFUL);
    track.SetColor(0xFFFFFFFFUL);
    EXPECT_EQ(track.GetColor(), 0xFFFFFFFFUL);
}

TEST(Track, Visibility_IsWhatWasSet) {
    CTrack track;
    track.SetVisible(false);
    EXPECT_FALSE(track.GetVisible());
    track.SetVisible(true);
    EXPECT_TRUE(track.GetVisible());
}

TEST(Track, SaveAndEpurateMarks_AreWhatWasSet) {
    CTrack track;
    track.SetIsSaveSus(true);
    track.SetEpurate(false);
    EXPECT_TRUE(track.IsSaveSus());
    EXPECT_FALSE(track.bEpurate());
}

TEST(Track, FreeSpace_IsAlwaysThere) { EXPECT_TRUE(CTrack().IsFreeSpaceCanStoreData()); }

TEST(Track, Init_IsANewTrackButForNameTitleAndTimes) {
    OpenTrack track = TrackRemembering(kThreeFixes, kPlanted);
    track.SetName("Kept");
    track.SetVisible(false);
    track.SetIsSaveSus(true);
    track.SetEpurate(false);

    track.Init();

    EXPECT_EQ(track.Header(), (TrackHeader{"Kept", 1, 0x00FF0000, 77, 88, 0.0, 0.0}));
    EXPECT_EQ(track.Title(), "Kept");
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_FALSE(track.IsSaveSus());
    EXPECT_TRUE(track.bEpurate());
}

TEST(Track, Init_CachedTimesAreComputedAnew) {
    OpenTrack track = TrackRemembering(kThreeFixes, kPlanted);
    track.Init();
    EXPECT_EQ(track.GetStartTime(), 0);
    EXPECT_EQ(track.GetEndTime(), 0);
}

TEST(Track, Init_SimplifyDistanceIsTwoMetresAgain) {
    OpenTrack track;
    track.SetSimplifyDis(5);
    track.Init();
    track.Append(kBentByThreeMetres);
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtCount(), 3u);
}

TEST(Track, Clear_EmptiesTheListAndKeepsTheCache) {
    OpenTrack track = TrackRemembering(kThreeFixes, kPlanted);
    track.clear();
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_EQ(track.Header(), kPlanted);
}

TEST(Track, Clear_CacheIsComputedAnewWhenAskedFor) {
    OpenTrack track = TrackRemembering(kThreeFixes, kPlanted);
    track.clear();
    EXPECT_EQ(track.GetLength(), 0.0);
    EXPECT_EQ(track.GetArea(), 0.0);
    EXPECT_EQ(track.GetStartTime(), 0);
    EXPECT_EQ(track.GetEndTime(), 0);
    EXPECT_EQ(track.Header(), (TrackHeader{"Planted", 1, 0x00112233, 0, 0, 0.0, 0.0}));
}

TEST(Track, GetPtListByReference_IsTheListInOrder) {
    const OpenTrack track = TrackOf(kThreeFixes);
    EXPECT_EQ(track.GetPtList(), kThreeFixes);
    EXPECT_EQ(&track.GetPtList(), &track.GetPtList());
}

TEST(Track, GetPtListIntoBuffer_CopiesTheFirstPoints) {
    const OpenTrack track = TrackOf(kThreeFixes);
    const TckPt untouched = At(1, 2, 3);
    for (int wanted = 1; wanted <= 3; ++wanted) {
        Points buffer(4, untouched);
        track.GetPtList(buffer.data(), wanted);
        for (std::size_t i = 0; i < buffer.size(); ++i)
            EXPECT_EQ(buffer[i], i < static_cast<std::size_t>(wanted) ? kThreeFixes[i] : untouched);
    }
}

TEST(Track, GetPtListIntoBuffer_CopiesNothingForACountOutOfRange) {
    const OpenTrack track = TrackOf(kThreeFixes);
    for (const int wanted : {0, -1, 4, 1000000}) {
        Points buffer(4, At(1, 2, 3));
        track.GetPtList(buffer.data(), wanted);
        EXPECT_EQ(buffer, Points(4, At(1, 2, 3))) << wanted;
    }
}

TEST(Track, GetPtListIntoBuffer_NullBufferIsHarmless) {
    TrackOf(kThreeFixes).GetPtList(static_cast<TckPt*>(nullptr), 3);
    EXPECT_EQ(TrackOf(kThreeFixes).GetPtCount(), 3u);
}

TEST(Track, GetPtListIntoVector_ReplacesItsContent) {
    Points list(10, At(1, 2, 3));
    TrackOf(kThreeFixes).GetPtList(list);
    EXPECT_EQ(list, kThreeFixes);
}

TEST(Track, GetPtListIntoVector_EmptyTrackEmptiesIt) {
    Points list(10, At(1, 2, 3));
    OpenTrack().GetPtList(list);
    EXPECT_TRUE(list.empty());
}

TEST(TrackCopy, Constructor_CopiesEverything) {
    OpenTrack source = TrackRemembering(kBentByThreeMetres, kPlanted);
    source.SetIsSaveSus(true);
    source.SetEpurate(false);
    source.SetVisible(false);
    source.SetSimplifyDis(5);

    OpenTrack copy(source);

    EXPECT_EQ(copy.Stream(), source.Stream());
    EXPECT_EQ(copy.Title(), source.Title());
    EXPECT_TRUE(copy.IsSaveSus());
    EXPECT_FALSE(copy.bEpurate());
    EXPECT_EQ(copy.GetLength(), 1234.5) << "the calculated flag is copied";
    EXPECT_EQ(copy.GetStartTime(), 77);
    copy.SimplifyPt();
    EXPECT_EQ(copy.GetPtCount(), 2u) << "the simplify distance is copied";
}

TEST(TrackCopy, Constructor_CopiesAClearFlagToo) {
    OpenTrack source = TrackOf(kThreeFixes);
    source.TakeHeader(kPlanted);
    OpenTrack copy(source);
    EXPECT_EQ(copy.Header(), kPlanted);
    EXPECT_EQ(copy.GetStartTime(), 1000) << "with the flag clear the times come from the points";
}

TEST(TrackCopy, Constructor_ListsAreSeparate) {
    OpenTrack source = TrackOf(kThreeFixes);
    OpenTrack copy(source);
    source.clear();
    EXPECT_EQ(PointsOf(copy), kThreeFixes);
}

TEST(TrackAssignment, TakesNameColourVisibilityLengthAreaAndPoints) {
    OpenTrack source = TrackRemembering(kThreeFixes, kPlanted);
    source.SetVisible(false);
    OpenTrack target = TrackOf({At(1, 1, 5)});
    target.TakeHeader({"Old", 1, 9, 11, 12, 13, 14});

    target = source;

    EXPECT_EQ(target.Header(), (TrackHeader{"Planted", 0, 0x00112233, 11, 12, 1234.5, 678.5}));
    EXPECT_EQ(PointsOf(target), kThreeFixes);
}

TEST(TrackAssignment, LeavesTitleTimesAndMarksAsTheyWere) {
    OpenTrack source = TrackRemembering(kThreeFixes, kPlanted);
    source.SetName("Source");
    source.SetIsSaveSus(true);
    source.SetEpurate(false);
    OpenTrack target;
    target.SetName("Target");
    target.TakeHeader({"Target", 1, 9, 11, 12, 13, 14});

    target = source;

    EXPECT_EQ(target.GetName(), "Source");
    EXPECT_EQ(target.Title(), "Target");
    EXPECT_EQ(target.Header().startTime, 11);
    EXPECT_EQ(target.Header().endTime, 12);
    EXPECT_FALSE(target.IsSaveSus());
    EXPECT_TRUE(target.bEpurate());
}

TEST(TrackAssignment, CalculatedFlagStaysTheTargets) {
    OpenTrack source = TrackOf(kThreeFixes);
    source.TakeHeader(kPlanted);
    OpenTrack calculated = TrackRemembering({At(1, 1, 5)}, {"T", 1, 9, 11, 12, 13, 14});
    OpenTrack notCalculated = TrackOf({At(1, 1, 5)});

    calculated = source;
    source.Calculate(true);
    source.TakeHeader(kPlanted);
    notCalculated = source;

    EXPECT_EQ(calculated.GetLength(), 1234.5);
    EXPECT_EQ(calculated.GetStartTime(), 11);
    EXPECT_EQ(notCalculated.GetLength(), TrackOf(kThreeFixes).GetLength());
    EXPECT_EQ(notCalculated.GetStartTime(), 1000);
}

TEST(TrackAssignment, TakesTheSimplifyDistance) {
    OpenTrack source = TrackOf(kBentByThreeMetres);
    source.SetSimplifyDis(5);
    OpenTrack target;
    target = source;
    target.SimplifyPt();
    EXPECT_EQ(target.GetPtCount(), 2u);
}

TEST(TrackAssignment, ToItself_ChangesNothing) {
    OpenTrack track = TrackRemembering(kThreeFixes, kPlanted);
    const std::string before = track.Stream();
    const CTrack& itself = track;
    static_cast<CTrack&>(track) = itself;
    EXPECT_EQ(track.Stream(), before);
    EXPECT_EQ(track.GetLength(), 1234.5);
}
