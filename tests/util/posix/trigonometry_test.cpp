// How far sine, cosine and arc tangent are from the true values, in units in the last place of a double:
// measured against a C library whose long double has more digits and is right to the last of them.
#include "util/trigonometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/util/random_reals.h"

namespace {

// 64 bits instead of 53: a true value is then known to a thousandth of the unit.
constexpr bool kHasMoreDigits = std::numeric_limits<long double>::digits >= 64;

double UnitsOff(double value, long double truth) {
    if (truth == 0) return value == 0 ? 0.0 : std::numeric_limits<double>::infinity();
    int exponent = 0;
    std::frexp(static_cast<double>(truth), &exponent);
    return static_cast<double>(std::fabs(value - truth) / std::ldexp(1.0L, exponent - 53));
}

double WorseOfBoth(double angle) {
    const auto [sine, cosine] = trigonometry::SineAndCosine(angle);
    const auto precise = static_cast<long double>(angle);
    return std::max(UnitsOff(sine, std::sin(precise)), UnitsOff(cosine, std::cos(precise)));
}

}  // namespace

TEST(SineError, AnglesOfEverySize_AreWithinOneUnit) {
    if (!kHasMoreDigits) GTEST_SKIP() << "long double has no more digits than double";
    RandomReals random(311);
    for (const double range : {1e-7, 1e-3, 0.1, 0.7854, 1.5708, 3.1416, 6.2832, 100.0, 800.0, 1e4, 1e15, 1e300})
        for (int round = 0; round < 50000; ++round) {
            const double angle = random.Within(range);
            ASSERT_LE(WorseOfBoth(angle), 0.9) << angle;
        }
}

TEST(SineError, AnglesBesideAQuarterTurn_AreWithinOneUnit) {
    if (!kHasMoreDigits) GTEST_SKIP() << "long double has no more digits than double";
    constexpr double kHalfPi = 1.5707963267948966;
    for (int quarters = -2000; quarters <= 2000; ++quarters) {
        double angle = quarters * kHalfPi;
        for (int step = 0; step < 4; ++step) {
            ASSERT_LE(WorseOfBoth(angle), 0.9) << angle;
            angle = std::nextafter(angle, 1e9);
        }
    }
}

TEST(ArcTangentError, DirectionsOfEverySlope_AreWithinOneUnit) {
    if (!kHasMoreDigits) GTEST_SKIP() << "long double has no more digits than double";
    RandomReals random(312);
    for (const double height : {1e-300, 1e-9, 1e-6, 1e-3, 0.01, 0.05, 0.11, 0.3, 1.0, 10.0, 1e6, 1e300})
        for (int round = 0; round < 50000; ++round) {
            const double y = random.Within(height), x = random.Within(1.0);
            const long double truth = std::atan2(static_cast<long double>(y), static_cast<long double>(x));
            ASSERT_LE(UnitsOff(trigonometry::ArcTangent(y, x), truth), 0.75) << y << ' ' << x;
        }
}
