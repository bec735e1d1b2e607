#include "util/quarter_turns.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace {

using trigonometry::kHalfPi;
using trigonometry::kHalfPiRest;
using trigonometry::Reduced;

// 2 / pi in binary, the point standing behind the first two words.
constexpr std::array<std::uint32_t, 41> kTwoOverPi = {
    0,          0,          0xa2f9836e, 0x4e441529, 0xfc2757d1, 0xf534ddc0, 0xdb629599, 0x3c439041, 0xfe5163ab,
    0xdebbc561, 0xb7246e3a, 0x424dd2e0, 0x06492eea, 0x09d1921c, 0xfe1deb1c, 0xb129a73e, 0xe88235f5, 0x2ebb4484,
    0xe99c7026, 0xb45f7e41, 0x3991d639, 0x835339f4, 0x9c845f8b, 0xbdf9283b, 0x1ff897ff, 0xde05980f, 0xef2f118b,
    0x5a0a6d1f, 0x6d367ecf, 0x27cb09b7, 0x4f463f66, 0x9e5fea2d, 0x7527bac7, 0xebe5f17b, 0x3d0739f7, 0x8a5292ea,
    0x6bfb5fb1, 0x1f8d5d08, 0x56033046, 0xfc7b6bab, 0xf0cfbc20};

std::uint32_t BitsOfTwoOverPi(std::size_t from) {
    const std::size_t word = from / 32;
    const std::uint64_t both = (std::uint64_t{kTwoOverPi[word]} << 32) | kTwoOverPi[word + 1];
    return static_cast<std::uint32_t>(both >> (32 - from % 32));
}

// A part of a whole turn, the most significant word first.
using Turn = std::array<std::uint32_t, 7>;

// Adds factor * 2^exponent quarter turns, in units of pi / 2; whole turns fall off at the front.
void AddQuarterTurns(Turn& turn, std::uint32_t factor, int exponent) {
    const auto from = static_cast<std::size_t>(exponent - 2 + 64);
    std::uint64_t carry = 0;
    for (std::size_t i = turn.size(); i-- > 0;) {
        const std::uint64_t sum = std::uint64_t{factor} * BitsOfTwoOverPi(from + 32 * i) + turn[i] + carry;
        turn[i] = static_cast<std::uint32_t>(sum);
        carry = sum >> 32;
    }
}

// The part of a turn, less the nearest quarter turns, as an angle.
Reduced AngleOf(const Turn& turn) {
    const std::uint32_t first = turn[0] + 0x20000000;  // rounded to the nearest quarter
    double scale = 0x1p-30;
    double quarters = (static_cast<double>(first & 0x3fffffff) - 0x20000000) * scale;
    double lost = 0.0;
    for (std::size_t i = 1; i < turn.size(); ++i) {
        scale *= 0x1p-32;
        const double sum = quarters + turn[i] * scale;
        lost += rounding::LostInSum(sum, quarters, turn[i] * scale);
        quarters = sum;
    }
    constexpr double kFirst = 0x1.921fb54p+0, kSecond = kHalfPi - kFirst;  // the first has 27 bits
    const double most = rounding::FirstDigits(quarters);
    const double exact = most * kFirst;
    const double tail = most * (kSecond + kHalfPiRest) + ((quarters - most) + lost) * kHalfPi;
    const double head = exact + tail;
    return {static_cast<int>(first >> 30), head, (exact - head) + tail};
}

}  // namespace

// As much of 2 / pi as matters is multiplied with the angle's 53 bits; whatever gives whole turns is left out.
// Source: Payne and Hanek, Radian reduction for trigonometric functions, SIGNUM Newsletter 18 (1983).
trigonometry::Reduced trigonometry::ReduceFar(double angle) {
    const auto bits = std::bit_cast<std::uint64_t>(angle);
    const int exponent = static_cast<int>((bits >> 52) & 0x7ff) - 1075;
    const std::uint64_t digits = (bits & 0xfffffffffffff) | 0x10000000000000;
    Turn turn{};
    AddQuarterTurns(turn, static_cast<std::uint32_t>(digits), exponent);
    AddQuarterTurns(turn, static_cast<std::uint32_t>(digits >> 32), exponent + 32);
    const Reduced reduced = AngleOf(turn);
    if (angle > 0) return reduced;
    return {-reduced.quarterTurns, -reduced.head, -reduced.tail};
}
