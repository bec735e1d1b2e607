#include "record/fcs16.h"

#include <array>

#include "record/log_format.h"
#include "util/bytes.h"

namespace {

constexpr std::uint16_t kPolynomial = 0x8408;  // x^16 + x^12 + x^5 + 1, least significant bit first
constexpr std::uint16_t kInitial = 0xFFFF;
constexpr std::uint16_t kGood = 0xF0B8;  // what remains of intact bytes followed by their sequence
constexpr std::size_t kStride = 8;       // bytes taken in at a time

using Table = std::array<std::uint16_t, 256>;

// Table 0 moves the remainder on by one byte; table n tells what a byte has become n bytes later.
constexpr std::array<Table, kStride> MakeTables() {
    std::array<Table, kStride> tables{};
    for (std::size_t value = 0; value < 256; ++value) {
        unsigned rest = static_cast<unsigned>(value);
        for (int bit = 0; bit < 8; ++bit) rest = (rest & 1u) != 0 ? (rest >> 1) ^ kPolynomial : rest >> 1;
        tables[0][value] = static_cast<std::uint16_t>(rest);
    }
    for (std::size_t n = 1; n < kStride; ++n)
        for (std::size_t value = 0; value < 256; ++value) {
            const std::uint16_t before = tables[n - 1][value];
            tables[n][value] = static_cast<std::uint16_t>((before >> 8) ^ tables[0][before & 0xFF]);
        }
    return tables;
}

constexpr std::array<Table, kStride> kTables = MakeTables();
static_assert(kTables[0][1] == 0x1189 && kTables[0][255] == 0x0F78, "the table printed in RFC 1662");

// The remainder once eight more bytes are taken in: each looked up by itself, none waiting for the one before.
constexpr std::uint16_t TakeEight(std::uint16_t rest, const unsigned char* bytes) {
    const auto low = static_cast<unsigned char>(bytes[0] ^ (rest & 0xFF));
    const auto high = static_cast<unsigned char>(bytes[1] ^ (rest >> 8));
    return static_cast<std::uint16_t>(kTables[7][low] ^ kTables[6][high] ^ kTables[5][bytes[2]] ^
                                      kTables[4][bytes[3]] ^ kTables[3][bytes[4]] ^ kTables[2][bytes[5]] ^
                                      kTables[1][bytes[6]] ^ kTables[0][bytes[7]]);
}

constexpr std::uint16_t Remainder(const unsigned char* bytes, std::size_t size) {
    std::uint16_t rest = kInitial;
    for (; size >= kStride; size -= kStride, bytes += kStride) rest = TakeEight(rest, bytes);
    for (; size > 0; --size, ++bytes)
        rest = static_cast<std::uint16_t>((rest >> 8) ^ kTables[0][(rest ^ *bytes) & 0xFF]);
    return rest;
}

constexpr std::uint16_t Complement(std::uint16_t rest) { return static_cast<std::uint16_t>(~rest); }

constexpr unsigned char kPublishedText[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
static_assert(Complement(Remainder(kPublishedText, 9)) == 0x906E, "the check value published for CRC-16/X-25");

const unsigned char* BytesOf(const TckPt& point) { return reinterpret_cast<const unsigned char*>(&point); }

}  // namespace

std::uint16_t fcs16::CheckSequence(const unsigned char* bytes, std::size_t size) {
    return Complement(Remainder(bytes, size));
}

void fcs16::Stamp(TckPt& point) {
    bytes::StoreLittleEndian(CheckSequence(BytesOf(point), log_file::kCheckedSize), point.reserved);
}

bool fcs16::IsValid(const TckPt& point) {
    return Remainder(BytesOf(point), log_file::kCheckedSize + log_file::kCheckSize) == kGood;
}
