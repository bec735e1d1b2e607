// The arc tangent. Sine and cosine: util/sine.cpp.
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "util/quarter_turns.h"
#include "util/rounding.h"
#include "util/trigonometry.h"

namespace {

using trigonometry::kHalfPi;
using trigonometry::kHalfPiRest;
using trigonometry::kPi;
using trigonometry::kPiRest;

constexpr double kTiny = 7.450580596923828e-9;  // 2^-27: below it the ratio is its own arc tangent
constexpr double kShort = 6.103515625e-5;       // 2^-14, some 400 m on earth: two terms of the series will do

// The series behind its first term, with the coefficients that fit best up to an eighth: interpolated at the
// zeros of a Chebyshev polynomial, off by less than 2^-61 of the result.
double ArcTangentSeries(double z) {
    const double z2 = z * z;
    return ((-0.3333333333333333 + 0.19999999999998902 * z) +
            z2 * (-0.14285714284611625 + 0.11111110695375413 * z)) +
           (z2 * z2) * ((-0.09090834366254187 + 0.07685398458195118 * z) - 0.06348249224566252 * z2);
}

// An angle between 0 and an eighth of a turn; the tail is what no longer fits in a double.
struct Angle {
    double head;
    double tail;
};

// The arc tangents of 0/32 to 32/32.
constexpr std::array<Angle, 33> kArcTangents = {{
    {0.0, 0.0},
    {0.031239833430268277, -1.188442711587748e-18},
    {0.06241880999595735, -1.5490756308295046e-18},
    {0.09347678115858947, -6.2844725995420954e-18},
    {0.12435499454676144, -3.1253241424539383e-18},
    {0.15499674192394097, 9.585415594114324e-18},
    {0.18534794999569476, 4.180692268843079e-18},
    {0.21535769969773805, 4.738160130078733e-19},
    {0.24497866312686414, 1.0698755618734451e-17},
    {0.2741674511196588, 8.261353575163773e-18},
    {0.3028848683749714, -1.1010827903001369e-17},
    {0.3310960767041321, -7.952610375793799e-18},
    {0.35877067027057225, -2.4623815582638635e-17},
    {0.38588266939807375, 2.378822732491941e-17},
    {0.4124104415973873, -1.587652227770689e-17},
    {0.43833655985795783, -2.494277030626541e-17},
    {0.4636476090008061, 2.2698777452961687e-17},
    {0.48833395105640554, -1.1373236189329585e-17},
    {0.5123894603107377, -2.5462781472855804e-17},
    {0.5358112379604637, -4.0637956834825575e-18},
    {0.5585993153435624, -5.4556305485916264e-18},
    {0.5807563535676704, -1.441464378193067e-17},
    {0.6022873461349642, 2.950430737228402e-17},
    {0.6231993299340659, 2.672403885140095e-17},
    {0.6435011087932844, 1.5834785051444286e-17},
    {0.6632029927060933, -3.076054864429649e-17},
    {0.6823165548747481, 6.943223671560008e-18},
    {0.7008544078844502, -1.987626234335816e-17},
    {0.7188299996216245, -2.1478388444456983e-17},
    {0.7362574289814281, 3.473937648299457e-17},
    {0.7531512809621944, -2.4256934659182068e-17},
    {0.7695264804056583, -3.704991905602721e-17},
    {0.7853981633974483, 3.061616997868383e-17},
}};

// Of y / x, 0 <= y <= x: the arc tangent of the nearest 32nd, and that of the rest by the series.
Angle InFirstOctant(double y, double x) {
    constexpr double kSteps = 32.0, kDirect = 3.5 / kSteps;
    const double ratio = y / x;
    if (ratio < kTiny) return {ratio, 0.0};
    if (ratio < kShort)
        return {ratio, rounding::LostInQuotient(ratio, y, x) - ratio * ratio * ratio * (1.0 / 3)};
    if (ratio < kDirect) {
        const double z = ratio * ratio;
        return {ratio, rounding::LostInQuotient(ratio, y, x) + z * ratio * ArcTangentSeries(z)};
    }
    const auto step = static_cast<std::size_t>(ratio * kSteps + 0.5);
    const double near = static_cast<double>(step) / kSteps;
    const double most = rounding::FirstDigits(x);  // its product with the 32nds is exact
    const double rest = ((y - near * most) - near * (x - most)) / (x + near * y);
    const double z = rest * rest;
    const Angle& known = kArcTangents[step];
    return {known.head, known.tail + (rest + z * rest * ArcTangentSeries(z))};
}

double Less(double whole, double restOfWhole, const Angle& angle) {
    const double difference = whole - angle.head;
    return difference + (((whole - difference) - angle.head) + (restOfWhole - angle.tail));
}

double Plus(double whole, double restOfWhole, const Angle& angle) {
    return Less(whole, restOfWhole, {-angle.head, -angle.tail});
}

// From 0 to pi, for a y that is not negative.
double UpperHalf(double y, double x) {
    const double width = std::fabs(x);
    if (y <= width) {
        const Angle angle = width == 0 ? Angle{0.0, 0.0} : InFirstOctant(y, width);
        return std::signbit(x) ? Less(kPi, kPiRest, angle) : angle.head + angle.tail;
    }
    const Angle angle = InFirstOctant(width, y);
    return std::signbit(x) ? Plus(kHalfPi, kHalfPiRest, angle) : Less(kHalfPi, kHalfPiRest, angle);
}

// Where something on the way could overflow or have too few digits: the same direction, measured elsewhere.
double WithoutExtremes(double y, double x) {
    if (std::isnan(x) || std::isnan(y)) return std::numeric_limits<double>::quiet_NaN();
    if (std::isinf(x) || std::isinf(y))
        return UpperHalf(std::isinf(y) ? 1.0 : 0.0, std::copysign(std::isinf(x) ? 1.0 : 0.0, x));
    const double scale = y > 1.0 || std::fabs(x) > 1.0 ? 0x1p-60 : 0x1p+200;
    return UpperHalf(y * scale, x * scale);
}

}  // namespace

double trigonometry::ArcTangent(double y, double x) {
    constexpr double kLargest = 0x1p+1000, kSmallest = 0x1p-900;
    const double height = std::fabs(y), width = std::fabs(x);
    const double larger = height > width ? height : width;
    const bool isOrdinary = larger > kSmallest && larger < kLargest && !std::isnan(height);
    return std::copysign(isOrdinary ? UpperHalf(height, x) : WithoutExtremes(height, x), y);
}
