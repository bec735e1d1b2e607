// An angle without its quarter turns, which is what series are good for. Which angles there are and what
// becomes of them: util/trigonometry.h.
#pragma once

#include "util/rounding.h"

namespace trigonometry {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kPiRest = 1.2246467991473532e-16;  // what is missing of pi in its double
inline constexpr double kHalfPi = kPi / 2;
inline constexpr double kHalfPiRest = kPiRest / 2;

// head + tail [rad], an eighth of a turn at most to either side; the tail is what no longer fits in a double.
struct Reduced {
    int quarterTurns;  // only its two lowest bits count
    double head;
    double tail;
};

// Up to here the quarter turns take 10 bits, so that their products with the first two parts of pi / 2, of 44
// bits each, are exact.
inline constexpr double kNear = 800.0;  // [rad]

// Of an angle of at most kNear. Source: Cody and Waite, Software Manual for the Elementary Functions.
inline Reduced ReduceNear(double angle) {
    constexpr double kFirst = 0x1.921fb54442c00p+0, kSecond = 0x1.18469898cc400p-44,
                     kThird = 0x1.1701b839a2520p-88, kPerHalfPi = 0.6366197723675814;
    const int turns = static_cast<int>(angle * kPerHalfPi + (angle < 0 ? -0.5 : 0.5));
    const double rest = angle - turns * kFirst;
    const double second = -turns * kSecond;
    const double sum = rest + second;
    const double tail = rounding::LostInSum(sum, rest, second) - turns * kThird;
    const double head = sum + tail;
    return {turns, head, (sum - head) + tail};
}

// Of any larger one that is finite; slower.
Reduced ReduceFar(double angle);

}  // namespace trigonometry
