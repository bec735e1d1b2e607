// Sine, cosine and arc tangent: exact cases, figures computed elsewhere with hundreds of digits, and the same
// bits for many angles in every build. How far they are from the true values:
// tests/util/posix/trigonometry_test.cpp.
#include "util/trigonometry.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/rounds.h"
#include "tests/support/seed.h"
#include "tests/util/random_reals.h"

namespace {

using trigonometry::ArcTangent;
using trigonometry::Cosine;
using trigonometry::Sine;
using trigonometry::SineAndCosine;

constexpr double kPi = 3.141592653589793, kInfinity = std::numeric_limits<double>::infinity(),
                 kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::uint64_t BitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

// One number that depends on every bit of many results.
class Digest {
 public:
    void Add(double value) { m_value = (m_value ^ BitsOf(value)) * 0x100000001b3; }
    std::uint64_t Value() const { return m_value; }

 private:
    std::uint64_t m_value = 0xcbf29ce484222325;
};

struct KnownAngle {
    double angle;
    std::uint64_t sine, cosine;
};

// The doubles nearest to the true values.
constexpr KnownAngle kKnownAngles[] = {
    {0x1p-20, 0x3eaffffffffffaab, 0x3feffffffffff000},
    {0.1, 0x3fb98eaecb8bcb2c, 0x3fefd712f9a817c1},
    {0.5, 0x3fdeaee8744b05f0, 0x3fec1528065b7d50},
    {0x1.921fb54442d18p-1, 0x3fe6a09e667f3bcc, 0x3fe6a09e667f3bcd},
    {0x1.9p-1, 0x3fe6888a4e134b2f, 0x3fe6b898fa9efb5d},
    {1.0, 0x3feaed548f090cee, 0x3fe14a280fb5068c},
    {0x1.921fb54442d18p+0, 0x3ff0000000000000, 0x3c91a62633145c07},
    {2.0, 0x3fed18f6ead1b446, 0xbfdaa22657537205},
    {3.0, 0x3fc210386db6d55b, 0xbfefae04be85e5d2},
    {0x1.921fb54442d18p+1, 0x3ca1a62633145c07, 0xbff0000000000000},
    {-4.5, 0x3fef47ed3dc74080, 0xbfcafb5b54583d6a},
    {6.25, 0xbfa0fcddc3f512bc, 0x3feffb7d58a8f975},
    {100.0, 0xbfe03425b78c4db8, 0x3feb981dbf665fdf},
    {799.5, 0x3feffae344e79082, 0x3fa215dad4edf68e},
    {801.0, 0x3fbb1e1198622178, 0xbfefd1e91b2a829c},
    {12345.678, 0xbfe687d5890974a5, 0x3fe6b94c3bbe24b8},
    {1e22, 0xbfeb453ab76bf397, 0x3fe0be2cef01c8f4},
    {-0x1.6ac5b262ca1ffp+849, 0xbff0000000000000, 0xbc214ae72e6ba22f},  // nearest to a multiple of pi / 2
    {0x1.fffffffffffffp+1023, 0x3f7452fc98b34e97, 0xbfefffe62ecfab75},
};

struct KnownDirection {
    double y, x;
    std::uint64_t angle;
};

constexpr KnownDirection kKnownDirections[] = {
    {1.0, 1e9, 0x3e112e0be826d695},         {1.0, 1000.0, 0x3f50624d77516e15},
    {3.0, 32.0, 0x3fb7ee182602f10f},        {0.11, 1.0, 0x3fbc0c17d875967a},
    {1.0, 2.0, 0x3fddac670561bb4f},         {-1.0, 3.0, 0xbfd4978fa3269ee1},
    {3.0, 4.0, 0x3fe4978fa3269ee1},         {5.0, -4.0, 0x4001f6dc3e631131},
    {2.0, -3.0, 0x40046dc09ec29433},        {1.0, -100.0, 0x40090d809fb90e1d},
    {1e-9, -1.0, 0x400921fb5421d100},       {1.0, 1e-9, 0x3ff921fb53ff74e9},
    {1e-300, 1e-299, 0x3fb983e282e2cc4c},   {-3e-323, 4e-323, 0xbfe4978fa3269ee1},
    {1.5e308, 1.7e308, 0x3fe722a598d15d3a}, {1e-308, 1e8, 0x000000000134d761},
};

}  // namespace

TEST(Sine, Zero_KeepsItsSign) {
    EXPECT_EQ(BitsOf(Sine(0.0)), BitsOf(0.0));
    EXPECT_EQ(BitsOf(Sine(-0.0)), BitsOf(-0.0));
    EXPECT_EQ(Cosine(0.0), 1.0);
    EXPECT_EQ(Cosine(-0.0), 1.0);
}

TEST(Sine, SmallestAngles_AreTheirOwnSine) {
    for (const double angle : {5e-324, -1e-310, 1e-200, -1e-9}) {
        EXPECT_EQ(Sine(angle), angle);
        EXPECT_EQ(Cosine(angle), 1.0);
    }
}

TEST(Sine, KnownAngles_AreTheNearestDoubles) {
    for (const KnownAngle& known : kKnownAngles) {
        EXPECT_EQ(BitsOf(Sine(known.angle)), known.sine) << known.angle;
        EXPECT_EQ(BitsOf(Cosine(known.angle)), known.cosine) << known.angle;
    }
}

TEST(Sine, AngleTurnedRound_ChangesTheSignOfTheSineAlone) {
    RandomReals random(Seed(301));
    for (int round = 0; round < 20000; ++round) {
        const double angle = random.Within(round % 2 == 0 ? 7.0 : 1e6);
        ASSERT_EQ(Sine(-angle), -Sine(angle)) << angle;
        ASSERT_EQ(Cosine(-angle), Cosine(angle)) << angle;
    }
}

TEST(Sine, BothAtOnce_AreTheTwoOneByOne) {
    constexpr double kRanges[] = {1e-9, 7.5e-9, 1e-6, 6.2e-5, 1e-3, 0.7854, 0.8,
                                  1.6,  6.2832, 801,  1e4,    1e15, 1e300};
    RandomReals random(Seed(302));
    for (int round = 0; round < Rounds(1300000); ++round) {
        const double angle = random.Within(kRanges[static_cast<std::size_t>(round) % std::size(kRanges)]);
        const auto [sine, cosine] = SineAndCosine(angle);
        ASSERT_EQ(BitsOf(Sine(angle)), BitsOf(sine)) << angle;
        ASSERT_EQ(BitsOf(Cosine(angle)), BitsOf(cosine)) << angle;
    }
}

// Where another series begins.
TEST(Sine, BothAtOnceBesideTheLimits_AreTheTwoOneByOne) {
    for (const double limit : {0x1p-27, 0x1p-14, kPi / 4, kPi / 2, kPi, 800.0})
        for (int step = -1000; step <= 1000; ++step) {
            const double angle = std::bit_cast<double>(BitsOf(limit) + static_cast<std::uint64_t>(step));
            const auto [sine, cosine] = SineAndCosine(angle);
            ASSERT_EQ(BitsOf(Sine(angle)), BitsOf(sine)) << angle;
            ASSERT_EQ(BitsOf(Cosine(angle)), BitsOf(cosine)) << angle;
        }
}

TEST(Sine, InfiniteOrNoNumber_IsNoNumber) {
    for (const double angle : {kInfinity, -kInfinity, kNoNumber}) {
        EXPECT_TRUE(std::isnan(Sine(angle)));
        EXPECT_TRUE(std::isnan(Cosine(angle)));
    }
}

// The number was found by a build whose results are near enough to the true ones; any other build that differs
// in one bit of one of them finds another.
TEST(Sine, ManyAngles_HaveTheSameBitsInEveryBuild) {
    RandomReals random(303);
    Digest digest;
    for (int round = 0; round < 50000; ++round)
        for (const double range : {1e-5, 0.7854, 6.2832, 1000.0, 1e300}) {
            const auto [sine, cosine] = SineAndCosine(random.Within(range));
            digest.Add(sine);
            digest.Add(cosine);
        }
    EXPECT_EQ(digest.Value(), 0x2cf93da66ff568f3u);
}

TEST(ArcTangent, Axes_AreExactQuarters) {
    for (const double far : {1e-320, 1.0, 1e308}) {
        EXPECT_EQ(BitsOf(ArcTangent(0.0, far)), BitsOf(0.0));
        EXPECT_EQ(BitsOf(ArcTangent(-0.0, far)), BitsOf(-0.0));
        EXPECT_EQ(ArcTangent(0.0, -far), kPi);
        EXPECT_EQ(ArcTangent(-0.0, -far), -kPi);
        EXPECT_EQ(ArcTangent(far, 0.0), kPi / 2);
        EXPECT_EQ(ArcTangent(far, -0.0), kPi / 2);
        EXPECT_EQ(ArcTangent(-far, 0.0), -kPi / 2);
    }
}

TEST(ArcTangent, Diagonals_AreExactEighths) {
    for (const double far : {1e-320, 1.0, 1.7e308}) {
        EXPECT_EQ(ArcTangent(far, far), kPi / 4);
        EXPECT_EQ(ArcTangent(-far, far), -kPi / 4);
        EXPECT_EQ(ArcTangent(far, -far), 3 * kPi / 4);
        EXPECT_EQ(ArcTangent(-far, -far), -3 * kPi / 4);
    }
}

TEST(ArcTangent, Origin_GoesByTheSigns) {
    EXPECT_EQ(BitsOf(ArcTangent(0.0, 0.0)), BitsOf(0.0));
    EXPECT_EQ(BitsOf(ArcTangent(-0.0, 0.0)), BitsOf(-0.0));
    EXPECT_EQ(ArcTangent(0.0, -0.0), kPi);
    EXPECT_EQ(ArcTangent(-0.0, -0.0), -kPi);
}

TEST(ArcTangent, Infinities_AreAxesAndDiagonals) {
    EXPECT_EQ(ArcTangent(1.0, kInfinity), 0.0);
    EXPECT_EQ(ArcTangent(1.0, -kInfinity), kPi);
    EXPECT_EQ(ArcTangent(-kInfinity, 1.0), -kPi / 2);
    EXPECT_EQ(ArcTangent(kInfinity, kInfinity), kPi / 4);
    EXPECT_EQ(ArcTangent(-kInfinity, -kInfinity), -3 * kPi / 4);
}

TEST(ArcTangent, NoNumber_GivesNoNumber) {
    for (const double other : {0.0, 1.0, -1.0, kInfinity, kNoNumber}) {
        EXPECT_TRUE(std::isnan(ArcTangent(kNoNumber, other)));
        EXPECT_TRUE(std::isnan(ArcTangent(other, kNoNumber)));
    }
}

TEST(ArcTangent, KnownDirections_AreTheNearestDoubles) {
    for (const KnownDirection& known : kKnownDirections)
        EXPECT_EQ(BitsOf(ArcTangent(known.y, known.x)), known.angle) << known.y << ' ' << known.x;
}

TEST(ArcTangent, MirroredBelowTheAxis_ChangesItsSign) {
    RandomReals random(Seed(304));
    for (int round = 0; round < 20000; ++round) {
        const double y = random.Within(1.0), x = random.Within(1.0);
        ASSERT_EQ(ArcTangent(-y, x), -ArcTangent(y, x)) << y << ' ' << x;
    }
}

TEST(ArcTangent, OfSineAndCosine_IsTheAngle) {
    RandomReals random(305);
    for (int round = 0; round < 20000; ++round) {
        const double angle = random.Within(kPi);
        ASSERT_NEAR(ArcTangent(Sine(angle), Cosine(angle)), angle, 5e-16) << round;
    }
}

// As for the sine.
TEST(ArcTangent, ManyDirections_HaveTheSameBitsInEveryBuild) {
    RandomReals random(306);
    Digest digest;
    for (int round = 0; round < 50000; ++round)
        for (const double height : {1e-9, 1e-5, 0.05, 1.0, 1e3}) {
            const double y = random.Within(height);
            digest.Add(ArcTangent(y, random.Within(1.0)));
        }
    EXPECT_EQ(digest.Value(), 0x20facc3d227070e2u);
}
