// Thinning as tracks do it: in place, or into a list of the caller's.
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/device.h"
#include "tests/support/recorded_data.h"
#include "tests/track/line_error.h"
#include "tests/track/track_fixture.h"

namespace {

constexpr double kMetre = 8.983152841197925e-6;  // in degrees of arc
const TrackHeader kPlanted{"n", 1, 2, 77, 88, 1234.5, 678.5};

// A line east with one point the given metres off it, as track points.
Points BentBy(double metres) { return {At(0, 0, 1), At(metres * kMetre, 0.01, 2), At(0, 0.02, 3)}; }

Points ThinnedCopy(const OpenTrack& track, int level = 0, bool wide = false) {
    Points out;
    track.SimplifyPt(out, level, wide);
    return out;
}

// Degrees of an NMEA field such as 3723.2475 or 12158.3416.
double NmeaDegrees(const std::string& field, const std::string& hemisphere) {
    const double value = std::stod(field);
    const double whole = std::floor(value / 100);
    const double degrees = whole + (value - whole * 100) / 60;
    return hemisphere == "S" || hemisphere == "W" ? -degrees : degrees;
}

// The valid RMC positions of an NMEA recording.
Points PositionsOf(const std::string& nmea) {
    Points pts;
    std::istringstream lines(nmea);
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> fields;
        std::istringstream rest(line);
        for (std::string field; std::getline(rest, field, ',');) fields.push_back(field);
        if (fields.size() > 6 && fields[0].ends_with("RMC") && fields[2] == "A")
            pts.push_back(At(NmeaDegrees(fields[3], fields[4]), NmeaDegrees(fields[5], fields[6])));
    }
    return Numbered(pts);
}

}  // namespace

TEST(TrackThinning, InPlace_ThinsTheTracksOwnPoints) {
    OpenTrack track = TrackOf(BentBy(1.9));
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtList(), (Points{BentBy(1.9)[0], BentBy(1.9)[2]}));
}

TEST(TrackThinning, InPlace_UsesTwoMetresUnlessToldOtherwise) {
    OpenTrack track = TrackOf(BentBy(2.1));
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtCount(), 3u);
    track.SetSimplifyDis(2.2);
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtCount(), 2u);
}

TEST(TrackThinning, DistanceInMetres_IsExactInDegrees) {
    for (const double metres : {0.5, 7.0, 150.0}) {
        OpenTrack justBelow = TrackOf(BentBy(metres * 0.9999999)),
                  justAbove = TrackOf(BentBy(metres * 1.0000001));
        justBelow.SetSimplifyDis(metres);
        justAbove.SetSimplifyDis(metres);
        EXPECT_EQ(ThinnedCopy(justBelow).size(), 2u) << metres;
        EXPECT_EQ(ThinnedCopy(justAbove).size(), 3u) << metres;
    }
}

TEST(TrackThinning, InPlace_ClearsTheFlagAndKeepsTheCache) {
    OpenTrack track = TrackRemembering(BentBy(2.1), kPlanted);
    track.SimplifyPt();
    EXPECT_EQ(track.Header(), kPlanted);
    EXPECT_EQ(track.GetStartTime(), 1);
}

TEST(TrackThinning, InPlace_EmptyTrackStaysAsItWas) {
    OpenTrack track = TrackRemembering({}, kPlanted);
    track.SimplifyPt();
    EXPECT_EQ(track.GetLength(), 1234.5) << "the flag is still set";
}

TEST(TrackThinning, IntoAList_ReplacesItsContent) {
    Points out(10, At(9, 9, 9));
    TrackOf(BentBy(1.9)).SimplifyPt(out, 0, false);
    EXPECT_EQ(out, (Points{BentBy(1.9)[0], BentBy(1.9)[2]}));
}

TEST(TrackThinning, IntoAList_EmptyTrackEmptiesIt) {
    Points out(10, At(9, 9, 9));
    OpenTrack().SimplifyPt(out, 0, false);
    EXPECT_TRUE(out.empty());
}

TEST(TrackThinning, IntoAList_LeavesTrackAndFlagAlone) {
    OpenTrack flagged = TrackRemembering(BentBy(1.9), kPlanted), plain = TrackOf(BentBy(1.9));
    const std::string before = flagged.Stream();
    ThinnedCopy(flagged);
    ThinnedCopy(plain);
    EXPECT_EQ(flagged.Stream(), before);
    EXPECT_EQ(flagged.GetLength(), 1234.5);
    plain.TakeHeader(kPlanted);
    EXPECT_EQ(plain.GetStartTime(), 1);
}

TEST(TrackThinning, IntoAList_LevelAndWideArePassedOn) {
    const OpenTrack track = TrackOf(BentBy(7));
    EXPECT_EQ(ThinnedCopy(track, 1).size(), 3u);
    EXPECT_EQ(ThinnedCopy(track, 2).size(), 2u);
    EXPECT_EQ(ThinnedCopy(track, 1, true), ThinnedCopy(track, 1, false));
}

TEST(TrackThinning, Epurate_DecidesAboutRepeatedPositions) {
    const Points line{At(1, 1, 0), At(1, 1, 1), At(1, 2, 2)};
    OpenTrack track = TrackOf(line);
    track.SetSimplifyDis(0);
    EXPECT_EQ(ThinnedCopy(track).size(), 2u);
    track.SetEpurate(false);
    EXPECT_EQ(ThinnedCopy(track), line);
}

TEST(TrackThinning, InPlace_IsWhatTheCopyIsAtLevelZero) {
    std::mt19937 random(181);
    OpenTrack track = TrackOf(AnyRoute(500, 47, 11, 1e-4, random));
    const Points copy = ThinnedCopy(track);
    track.SimplifyPt();
    EXPECT_EQ(track.GetPtList(), copy);
}

TEST(TrackThinning, RecordedDrive_LosesMostPointsAndNoShape) {
    const auto file = RecordedFile("nmea", "drive-sierra-nevada.nmea");
    if (!file) GTEST_SKIP() << "no recorded data here";
    const Points drive = PositionsOf(ReadFile(*file));
    ASSERT_GT(drive.size(), 100u);
    const Points thinned = ThinnedCopy(TrackOf(drive));
    EXPECT_LT(thinned.size(), drive.size());
    EXPECT_EQ(thinned.front(), drive.front());
    EXPECT_EQ(thinned.back(), drive.back());
    EXPECT_LE(LargestError(drive, thinned), 2.02 * kMetre);
}
