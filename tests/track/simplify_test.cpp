// Thinning a list of points by distance: what goes, what must stay, and how far the line may move.
// Thinning as tracks do it: tests/track/thinning_test.cpp.
#include "track/simplify.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/support/machine.h"
#include "tests/support/seed.h"
#include "tests/track/line_error.h"
#include "util/trigonometry.h"

namespace {

constexpr double kMetre = 8.983152841197925e-6;  // in degrees of arc
constexpr double kTwoMetres = 2 * kMetre;
constexpr double kSlack = 1.01;  // the planes of the test and of the code differ a little

Points Thinned(Points pts, double tolerance = kTwoMetres, int level = 0) {
    CDilutionPt dilution;
    dilution.SetSimplifyDis(tolerance);
    dilution.SetOnceSimpPt(60);
    dilution.SimplifyPt(pts, level, false, true);
    return pts;
}

Points Epurated(Points pts, double tolerance = 0.0) {
    CDilutionPt dilution;
    dilution.SetSimplifyDis(tolerance);
    dilution.SetEpurate(true);
    dilution.SimplifyPt(pts);
    return pts;
}

// A place given in metres east and north of another, true to scale there.
TckPt MetresFrom(double latitude, double longitude, double east, double north) {
    const double shrink = std::cos(latitude * std::numbers::pi / 180);
    double lon = longitude + east * kMetre / shrink;
    if (lon > 180) lon -= 360;
    return At(latitude + north * kMetre, lon);
}

// A walk with steps of some metres in changing directions.
Points Walk(std::size_t count, double latitude, double longitude, std::mt19937& random) {
    Points pts;
    double east = 0, north = 0, heading = 0;
    for (std::size_t i = 0; i < count; ++i) {
        pts.push_back(MetresFrom(latitude, longitude, east, north));
        heading += Between(-0.6, 0.6, random);
        east += 5 * std::cos(heading);
        north += 5 * std::sin(heading);
    }
    return Numbered(pts);
}

Points Circle(std::size_t count, double radius) {
    Points pts;
    for (std::size_t i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(count - 1);
        pts.push_back(MetresFrom(47, 11, radius * std::cos(angle), radius * std::sin(angle)));
    }
    pts.back() = pts.front();
    return Numbered(pts);
}

// Zigzag of falling height: whoever halves the line at its farthest point takes off one point at a time.
Points FallingZigzag(std::size_t count) {
    Points pts;
    for (std::size_t i = 0; i < count; ++i) {
        const double height = 1.0 - static_cast<double>(i) / static_cast<double>(count);
        pts.push_back(At(i % 2 == 0 ? height : -height, 1e-5 * static_cast<double>(i)));
    }
    return Numbered(pts);
}

// Squared distance of a point from the piece between two others, in a plane true to scale halfway between those
// [deg^2].
double SquaredDistance(const TckPt& first, const TckPt& last, const TckPt& point) {
    const auto square = [](double value) { return value * value; };
    const double shrink = trigonometry::Cosine((first.dLatitude + last.dLatitude) * 0.5 * 0.017453292519943278);
    const auto east = [&](const TckPt& to) {
        double degrees = to.dLongitude - first.dLongitude;
        if (degrees > 180) degrees -= 360;
        if (degrees < -180) degrees += 360;
        return degrees * shrink;
    };
    const double endX = east(last), endY = last.dLatitude - first.dLatitude;
    const double x = east(point), y = point.dLatitude - first.dLatitude;
    const double along = x * endX + y * endY, length = endX * endX + endY * endY;
    if (along <= 0) return x * x + y * y;
    if (along >= length) return square(x - endX) + square(y - endY);
    return square(x * endY - y * endX) / length;
}

// The points that stay, the plain way: every distance computed and compared.
class PlainThinning {
 public:
    PlainThinning(const Points& pts, double tolerance) : m_pts(pts), m_tolerance(tolerance) {
        while (pts.size() >> m_digits != 0) ++m_digits;
    }
    Points Kept() {
        m_kept = {m_pts.front()};
        KeepBetween(0, m_pts.size() - 1, 0);
        m_kept.push_back(m_pts.back());
        return m_kept;
    }

 private:
    // Those strictly between. A piece cut off often enough is halved by its number of points.
    void KeepBetween(std::size_t first, std::size_t last, unsigned depth) {
        std::size_t division = first;
        double farthest = -1.0;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double squared = SquaredDistance(m_pts[first], m_pts[last], m_pts[i]);
            if (squared <= farthest) continue;
            division = i;
            farthest = squared;
        }
        if (farthest <= m_tolerance * m_tolerance) return;
        if (depth >= 2 * m_digits + 8) division = (first + last) / 2;
        KeepBetween(first, division, depth + 1);
        m_kept.push_back(m_pts[division]);
        KeepBetween(division, last, depth + 1);
    }

    const Points& m_pts;
    double m_tolerance;
    unsigned m_digits = 0;  // of the number of points, in binary
    Points m_kept;
};

Points ThinnedThePlainWay(const Points& pts, double tolerance) { return PlainThinning(pts, tolerance).Kept(); }

void ExpectFaithful(const Points& all, const Points& kept, double tolerance) {
    ASSERT_GE(kept.size(), std::min<std::size_t>(all.size(), 2));
    EXPECT_EQ(kept.front(), all.front());
    EXPECT_EQ(kept.back(), all.back());
    EXPECT_LE(LargestError(all, kept), tolerance * kSlack);
}

}  // namespace

TEST(Thinning, UpToTwoPoints_StayAsTheyAre) {
    EXPECT_TRUE(Thinned({}).empty());
    EXPECT_EQ(Thinned({At(1, 2, 3)}), (Points{At(1, 2, 3)}));
    EXPECT_EQ(Thinned({At(1, 2, 3), At(1, 2, 3)}), (Points{At(1, 2, 3), At(1, 2, 3)}));
}

TEST(Thinning, StraightLine_IsItsEnds) {
    Points line;
    for (int i = 0; i < 1000; ++i) line.push_back(At(0, 1e-4 * i, i));
    EXPECT_EQ(Thinned(line), (Points{line.front(), line.back()}));
}

TEST(Thinning, ShakyLineWithinTheTolerance_IsItsEnds) {
    std::mt19937 random(161);
    Points line;
    for (int i = 0; i < 1000; ++i) line.push_back(MetresFrom(47, 11, 5 * i, Between(-0.9, 0.9, random)));
    EXPECT_EQ(Thinned(line), (Points{line.front(), line.back()}));
}

TEST(Thinning, PointJustBeyondTheTolerance_Stays) {
    const Points line{At(0, 0), At(kTwoMetres * 1.000001, 0.01), At(0, 0.02)};
    EXPECT_EQ(Thinned(line), line);
}

TEST(Thinning, PointJustWithinTheTolerance_Goes) {
    const Points line{At(0, 0), At(kTwoMetres * 0.999999, 0.01), At(0, 0.02)};
    EXPECT_EQ(Thinned(line), (Points{line[0], line[2]}));
}

TEST(Thinning, EveryLatitude_MeasuresInMetres) {
    for (const double latitude : {0.0, 45.0, 60.0, -60.0, 80.0}) {
        SCOPED_TRACE(latitude);
        for (const double off : {1.98, -1.98, 2.02, -2.02}) {
            const Points east{At(latitude, 11), MetresFrom(latitude, 11, 50, off),
                              MetresFrom(latitude, 11, 100, 0)};
            const Points north{At(latitude, 11), MetresFrom(latitude, 11, off, 50),
                               MetresFrom(latitude, 11, 0, 100)};
            const std::size_t expected = std::fabs(off) < 2 ? 2 : 3;
            EXPECT_EQ(Thinned(east).size(), expected) << "on the way east, " << off << " m off";
            EXPECT_EQ(Thinned(north).size(), expected) << "on the way north, " << off << " m off";
        }
    }
}

TEST(Thinning, AcrossTheDateLine_IsAsElsewhere) {
    std::mt19937 here(162), there(162);
    const Points walk = Walk(2000, 10, 179.995, here);
    const Points elsewhere = Walk(2000, 10, 11, there);
    const Points kept = Thinned(walk);
    EXPECT_NEAR(static_cast<double>(kept.size()), static_cast<double>(Thinned(elsewhere).size()), 2);
    EXPECT_LT(kept.size(), walk.size() / 2);
    ExpectFaithful(walk, kept, kTwoMetres);
}

TEST(Thinning, StraightAcrossTheDateLine_IsItsEnds) {
    const Points line{At(0, 179.99), At(0, 179.995), At(0, 180), At(0, -179.995), At(0, -179.99)};
    EXPECT_EQ(Thinned(line), (Points{line.front(), line.back()}));
    const Points back(line.rbegin(), line.rend());
    EXPECT_EQ(Thinned(back), (Points{back.front(), back.back()}));
}

TEST(Thinning, ClosedRing_DoesNotCollapse) {
    const Points ring = Circle(721, 300);
    const Points kept = Thinned(ring);
    EXPECT_GE(kept.size(), 12u);
    EXPECT_LE(kept.size(), 120u);
    ExpectFaithful(ring, kept, kTwoMetres);
}

TEST(Thinning, OutAndBack_KeepsTheTurn) {
    Points way;
    for (int i = 0; i <= 100; ++i) way.push_back(MetresFrom(47, 11, 10 * i, 0));
    for (int i = 99; i >= 0; --i) way.push_back(MetresFrom(47, 11, 10 * i, 0));
    way = Numbered(way);
    EXPECT_EQ(KeptNumbers(way, Thinned(way)), (std::vector<std::size_t>{0, 100, 200}));
}

TEST(Thinning, SpikeBeyondTheEnd_Stays) {
    const Points way{MetresFrom(47, 11, 0, 0), MetresFrom(47, 11, 200, 0), MetresFrom(47, 11, 100, 0)};
    EXPECT_EQ(Thinned(way), way);
    const Points behind{MetresFrom(47, 11, 0, 0), MetresFrom(47, 11, -100, 0), MetresFrom(47, 11, 100, 0)};
    EXPECT_EQ(Thinned(behind), behind);
}

TEST(Thinning, CornerOfARightAngle_Stays) {
    Points way;
    for (int i = 0; i <= 70; ++i) way.push_back(MetresFrom(47, 11, 10 * i, 0));
    for (int i = 1; i <= 70; ++i) way.push_back(MetresFrom(47, 11, 700, 10 * i));
    way = Numbered(way);
    EXPECT_EQ(KeptNumbers(way, Thinned(way)), (std::vector<std::size_t>{0, 70, 140}));
}

// Corners at and around multiples of 60, the size that callers give for one go.
TEST(Thinning, CornersAtBlockEnds_Stay) {
    for (std::size_t corner = 58; corner <= 122; ++corner) {
        Points way;
        for (std::size_t i = 0; i <= 180; ++i) {
            const double along = 10.0 * static_cast<double>(i), turned = 10.0 * static_cast<double>(corner);
            way.push_back(i <= corner ? MetresFrom(47, 11, along, 0)
                                      : MetresFrom(47, 11, turned, along - turned));
        }
        way = Numbered(way);
        EXPECT_EQ(KeptNumbers(way, Thinned(way)), (std::vector<std::size_t>{0, corner, 180}));
    }
}

TEST(Thinning, AnyWalk_StaysWithinTheTolerance) {
    std::mt19937 random(163);
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE("seed 163, round " + std::to_string(round));
        const Points walk = Walk(400, Between(-70, 70, random), Between(-180, 180, random), random);
        const double tolerance = Between(0.5, 40, random) * kMetre;
        ExpectFaithful(walk, Thinned(walk, tolerance), tolerance);
    }
}

TEST(ThinningReference, AnyWalk_KeepsThePointsOfThePlainWay) {
    std::mt19937 random(Seed(164));
    for (int round = 0; round < 600; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const double longitude = round % 4 == 0 ? 179.999 : Between(-180, 180, random);
        const Points walk = Walk(300, Between(-85, 85, random), longitude, random);
        const double tolerance = Between(0.1, 40, random) * kMetre;
        ASSERT_EQ(Thinned(walk, tolerance), ThinnedThePlainWay(walk, tolerance));
    }
}

// On a grid many points are equally far, and the first of them divides.
TEST(ThinningReference, PointsOfAGrid_KeepThePointsOfThePlainWay) {
    std::mt19937 random(Seed(165));
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const double latitude = round % 2 == 0 ? 0.0 : 50.0;
        Points pts;
        for (int i = 0; i < 120; ++i)
            pts.push_back(At(latitude + 1e-5 * static_cast<double>(random() % 5),
                             1e-5 * static_cast<double>(random() % 9)));
        pts = Numbered(pts);
        const double tolerance = 1e-5 * static_cast<double>(random() % 3) + 1e-9;
        ASSERT_EQ(Thinned(pts, tolerance), ThinnedThePlainWay(pts, tolerance));
    }
}

TEST(Thinning, WiderTolerance_KeepsFewerPoints) {
    std::mt19937 random(164);
    const Points walk = Walk(3000, 47, 11, random);
    std::size_t before = walk.size();
    for (const double metres : {0.5, 2.0, 8.0, 32.0}) {
        const std::size_t kept = Thinned(walk, metres * kMetre).size();
        EXPECT_LT(kept, before) << metres;
        before = kept;
    }
}

TEST(Thinning, EachLevel_DoublesTheTolerance) {
    std::mt19937 random(165);
    const Points walk = Walk(2000, 47, 11, random);
    for (int level = 0; level <= 6; ++level)
        EXPECT_EQ(Thinned(walk, kTwoMetres, level), Thinned(walk, kTwoMetres * (1 << level))) << level;
    EXPECT_NE(Thinned(walk, kTwoMetres, 1), Thinned(walk, kTwoMetres));
}

TEST(Thinning, NegativeLevel_IsLevelZero) {
    std::mt19937 random(166);
    const Points walk = Walk(500, 47, 11, random);
    for (const int level : {-1, -60, std::numeric_limits<int>::min()})
        EXPECT_EQ(Thinned(walk, kTwoMetres, level), Thinned(walk)) << level;
}

TEST(Thinning, HugeLevel_LeavesTheEnds) {
    std::mt19937 random(167);
    const Points walk = Walk(500, 47, 11, random);
    for (const int level : {40, 64, 5000, std::numeric_limits<int>::max()})
        EXPECT_EQ(Thinned(walk, kTwoMetres, level), (Points{walk.front(), walk.back()})) << level;
}

TEST(Thinning, WideAndLast_HaveNoEffect) {
    std::mt19937 random(168);
    const Points walk = Walk(500, 47, 11, random);
    CDilutionPt dilution;
    dilution.SetSimplifyDis(kTwoMetres);
    for (const bool wide : {false, true})
        for (const bool last : {false, true}) {
            Points pts = walk;
            dilution.SimplifyPt(pts, 0, wide, last);
            EXPECT_EQ(pts, Thinned(walk));
        }
}

TEST(Thinning, PointsInOneGo_HaveNoEffect) {
    std::mt19937 random(169);
    const Points walk = Walk(500, 47, 11, random);
    for (const unsigned int points : {0u, 1u, 2u, 60u, 1000u, ~0u}) {
        CDilutionPt dilution;
        dilution.SetSimplifyDis(kTwoMetres);
        dilution.SetOnceSimpPt(points);
        Points pts = walk;
        dilution.SimplifyPt(pts);
        EXPECT_EQ(pts, Thinned(walk)) << points;
    }
}

TEST(Thinning, NoTolerance_KeepsEveryPoint) {
    std::mt19937 random(170);
    Points walk = Walk(200, 47, 11, random);
    walk.insert(walk.begin() + 50, walk[50]);
    for (const double none : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(Thinned(walk, none), walk) << none;
}

TEST(Thinning, NewObject_KeepsEveryPoint) {
    Points line{At(0, 0), At(0, 1), At(0, 1), At(0, 2)};
    CDilutionPt().SimplifyPt(line);
    EXPECT_EQ(line.size(), 4u);
}

TEST(Thinning, PositionsThatAreNoNumbers_LoseNothingElse) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const TckPt corner = At(0.01, 0.015);
    for (const Points& line :
         {Points{At(0, 0), At(none, none), At(0, 0.01), corner, At(0, 0.02), At(0, 0.03)},
          Points{At(0, 0), At(0, 0.01), corner, At(none, none), At(0, 0.02), At(0, 0.03)}}) {
        const Points kept = Thinned(line);
        EXPECT_EQ(kept.front(), line.front());
        EXPECT_EQ(kept.back(), line.back());
        EXPECT_NE(std::find(kept.begin(), kept.end(), corner), kept.end()) << "the corner is gone";
    }
}

// Such a place is endlessly far from every line.
TEST(Thinning, PositionsThatAreEndless_Stay) {
    const double endless = std::numeric_limits<double>::infinity();
    for (const double far : {endless, -endless})
        for (const Points& line :
             {Points{At(0, 0), At(5, far), At(0, far)}, Points{At(0, far), At(5, far), At(0, 0)},
              Points{At(0, 0), At(far, 5), At(far, 0)}, Points{At(far, 0), At(far, 5), At(0, 0)},
              Points{At(0, 0), At(far, far), At(0, 1)}, Points{At(0, far), At(5, far), At(0, -far)}})
            EXPECT_EQ(Thinned(line), line);
}

TEST(Thinning, EveryOtherFieldOfTheKeptPoints_StaysAsItWas) {
    std::mt19937 random(171);
    Points line{AnyBytes(random), AnyBytes(random), AnyBytes(random)};
    for (std::size_t i = 0; i < 3; ++i) {
        line[i].dLatitude = i == 1 ? 1 : 0;
        line[i].dLongitude = static_cast<double>(i);
    }
    EXPECT_EQ(Thinned(line), line);
}

TEST(Thinning, HundredThousandPoints_StayWithinTheTolerance) {
    std::mt19937 random(172);
    Points line;
    for (int i = 0; i < 150000; ++i)
        line.push_back(At(0.02 * std::sin(i * 1e-4) + Between(-1e-6, 1e-6, random), 2e-6 * i));
    line = Numbered(line);
    const Points kept = Thinned(line);
    EXPECT_LT(kept.size(), line.size() / 100);
    ExpectFaithful(line, kept, kTwoMetres);
}

// On a stack of 256 KiB, where a call for each point taken off would not end well.
TEST(Thinning, PointsTakenOffOneByOne_NeedNoDeepStack) {
    const Points all = FallingZigzag(6000);
    Points kept;
    RunOnSmallStack([&] { kept = Thinned(all); });
    EXPECT_GT(kept.size(), 5000u);
    ExpectFaithful(all, kept, kTwoMetres);
}

// Divided at the farthest point this line loses one point at a time.
TEST(Thinning, LongLineMadeToBeSlow_StaysWithinTheTolerance) {
    const Points line = FallingZigzag(200'000);
    ExpectFaithful(line, Thinned(line), kTwoMetres);
}

TEST(Epurate, RepeatedPositions_AreRemoved) {
    const Points line{At(1, 1, 0), At(1, 1, 1), At(1, 2, 2), At(1, 2, 3),
                      At(1, 2, 4), At(1, 1, 5), At(2, 2, 6)};
    EXPECT_EQ(Epurated(line), (Points{line[0], line[2], line[5], line[6]}));
}

TEST(Epurate, LastPoint_StaysThoughItRepeats) {
    const Points line{At(1, 1, 0), At(1, 2, 1), At(1, 2, 2), At(1, 2, 3)};
    const Points kept = Epurated(line);
    EXPECT_EQ(kept.front(), line.front());
    EXPECT_EQ(kept.back(), line.back());
    EXPECT_EQ(kept.size(), 2u);
}

TEST(Epurate, OnePlaceOnly_KeepsFirstAndLast) {
    const Points still{At(1, 1, 0), At(1, 1, 1), At(1, 1, 2), At(1, 1, 3)};
    EXPECT_EQ(Epurated(still), (Points{still[0], still[3]}));
}

TEST(Epurate, UpToTwoPoints_StayAsTheyAre) {
    EXPECT_TRUE(Epurated({}).empty());
    EXPECT_EQ(Epurated({At(1, 1, 0)}).size(), 1u);
    EXPECT_EQ(Epurated({At(1, 1, 0), At(1, 1, 1)}).size(), 2u);
}

TEST(Epurate, PlacesVisitedAgain_Stay) {
    const Points way{At(1, 1, 0), At(1, 2, 1), At(1, 1, 2), At(1, 2, 3)};
    EXPECT_EQ(Epurated(way), way);
}

TEST(Epurate, OneCoordinateRepeated_Stays) {
    const Points way{At(1, 1, 0), At(1, 2, 1), At(3, 2, 2), At(3, 1, 3)};
    EXPECT_EQ(Epurated(way), way);
}

TEST(Epurate, WithATolerance_StaysWithinIt) {
    std::mt19937 random(173);
    Points walk = Walk(500, 47, 11, random);
    for (std::size_t i = 10; i < walk.size(); i += 10)
        walk.insert(walk.begin() + static_cast<long>(i), walk[i]);
    walk = Numbered(walk);
    ExpectFaithful(walk, Epurated(walk, kTwoMetres), kTwoMetres);
}
