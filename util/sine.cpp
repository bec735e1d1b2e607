// Sine and cosine: series for up to an eighth of a turn, after util/quarter_turns.h. The arc tangent:
// util/arc_tangent.cpp.
#include <cmath>

#include "util/quarter_turns.h"
#include "util/trigonometry.h"

namespace {

using trigonometry::Reduced;
using trigonometry::SineCosine;

constexpr double kTiny = 7.450580596923828e-9;  // 2^-27: below it the angle is its own sine
constexpr double kShort = 6.103515625e-5;       // 2^-14, some 400 m on earth: two terms of the series will do
constexpr double kQuarterPi = trigonometry::kPi / 4;

// The series behind the terms that OfSmall takes care of, with the coefficients that fit best up to an eighth
// of a turn: interpolated at the zeros of a Chebyshev polynomial, off by less than 2^-57 of the result.
double SineSeries(double z) {
    const double z2 = z * z;
    return ((-0.1666666666666663 + 0.008333333333321863 * z) +
            z2 * (-0.00019841269829349052 + 2.7557313526938444e-06 * z)) +
           (z2 * z2) * (-2.5050731447374858e-08 + 1.5895205062708452e-10 * z);
}

double CosineSeries(double z) {
    const double z2 = z * z;
    return ((0.041666666666666664 - 0.0013888888888887322 * z) +
            z2 * (2.4801587298651618e-05 - 2.755731721285402e-07 * z)) +
           (z2 * z2) * (2.087613405864077e-09 - 1.1381757118304215e-11 * z);
}

// Of head + tail, at most an eighth of a turn.
double SineOfSmall(double head, double tail) {
    const double z = head * head;
    return head + (tail * (1.0 - 0.5 * z) + z * head * SineSeries(z));
}

double CosineOfSmall(double head, double tail) {
    const double z = head * head;
    const double half = 0.5 * z;
    const double most = 1.0 - half;
    return most + (((1.0 - most) - half) + (z * z * CosineSeries(z) - head * tail));
}

Reduced Reduce(double angle) {
    if (std::fabs(angle) <= trigonometry::kNear) return trigonometry::ReduceNear(angle);
    if (std::isfinite(angle)) return trigonometry::ReduceFar(angle);
    return {0, angle - angle, 0.0};  // no number
}

// A quarter turn makes a cosine of a sine and the negative sine of a cosine.
SineCosine OfReduced(const Reduced& angle) {
    const double sine = SineOfSmall(angle.head, angle.tail), cosine = CosineOfSmall(angle.head, angle.tail);
    switch (angle.quarterTurns & 3) {
        case 0:
            return {sine, cosine};
        case 1:
            return {cosine, -sine};
        case 2:
            return {-sine, -cosine};
        default:
            return {-cosine, sine};
    }
}

double CosineOfReduced(const Reduced& angle) {
    const bool isOdd = (angle.quarterTurns & 1) != 0, isTurnedRound = ((angle.quarterTurns + 1) & 2) != 0;
    const double cosine = isOdd ? SineOfSmall(angle.head, angle.tail) : CosineOfSmall(angle.head, angle.tail);
    return isTurnedRound ? -cosine : cosine;
}

// Below kShort.
double SineOfShort(double angle) { return angle - angle * angle * angle * (1.0 / 6); }
double CosineOfShort(double angle) { return 1.0 - angle * angle * 0.5; }

}  // namespace

trigonometry::SineCosine trigonometry::SineAndCosine(double radians) {
    const double magnitude = std::fabs(radians);
    if (magnitude < kTiny) return {radians, 1.0};
    if (magnitude < kShort) return {SineOfShort(radians), CosineOfShort(radians)};
    if (magnitude <= kQuarterPi) return {SineOfSmall(radians, 0.0), CosineOfSmall(radians, 0.0)};
    return OfReduced(Reduce(radians));
}

double trigonometry::Sine(double radians) { return SineAndCosine(radians).sine; }

double trigonometry::Cosine(double radians) {
    const double magnitude = std::fabs(radians);
    if (magnitude < kShort) return CosineOfShort(radians);
    return magnitude <= kQuarterPi ? CosineOfSmall(radians, 0.0) : CosineOfReduced(Reduce(radians));
}
