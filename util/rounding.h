// What rounding takes away from sums and quotients of doubles, for computations that need more digits than one
// double holds. Exact while nothing overflows or has fewer digits than a double should. Any thread; nothing is
// thrown. The users are util/quarter_turns.cpp and util/arc_tangent.cpp.
#pragma once

#include <bit>
#include <cstdint>

namespace rounding {

// The first 26 of the 53 binary digits: a product of two such numbers is exact.
inline double FirstDigits(double value) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) & 0xfffffffff8000000);
}

// What is to be added to `sum` to make it a + b. Source: Knuth, The Art of Computer Programming, volume
// 2, 4.2.2.
inline double LostInSum(double sum, double a, double b) {
    const double part = sum - a;
    return (a - (sum - part)) + (b - part);
}

// What is to be added to `quotient` to make it y / x, itself rounded. Source: the product in halves by Dekker,
// A floating-point technique for extending the available precision, Numerische Mathematik 18 (1971).
inline double LostInQuotient(double quotient, double y, double x) {
    const double a = FirstDigits(quotient), b = quotient - a;
    const double c = FirstDigits(x), d = x - c;
    return (((y - a * c) - a * d - b * c) - b * d) / x;
}

}  // namespace rounding
