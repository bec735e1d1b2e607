// The live recording's files for tests, put together from their description.
#pragma once

#include <string>
#include <vector>

#include "host/recording/ring_image.h"
#include "tests/support/byte_string.h"
#include "tests/support/points.h"

namespace host {

constexpr std::int32_t kFirstTime = 1000000000;

// A remainder of the polynomial division, bit by bit, least significant first.
template <typename Word>
Word Remainder(const std::string& bytes, Word polynomial) {
    Word sum = static_cast<Word>(~Word{0});
    for (const char c : bytes)
        for (int bit = 0; bit < 8; ++bit) {
            const bool isSet = ((sum ^ (static_cast<unsigned char>(c) >> bit)) & 1) != 0;
            sum = static_cast<Word>((sum >> 1) ^ (isSet ? polynomial : 0));
        }
    return static_cast<Word>(~sum);
}

// Fix `number`, with its check sequence.
inline TckPt RingFix(int number) {
    TckPt fix = At(47.1 + number * 0.0001, 8.5 - number * 0.00007, kFirstTime + number);
    fix.dAltitude = 400.5;
    fix.dSpeed = 11.25;
    fix.fCourse = 90.5f;
    const auto check = Remainder<std::uint16_t>(PointBytes(fix).substr(0, 40), 0x8408);
    fix.reserved[0] = static_cast<unsigned char>(check & 0xff);
    fix.reserved[1] = static_cast<unsigned char>(check >> 8);
    return fix;
}

// A ring whose slots hold the fixes of these numbers; -1 is a record of zeros.
inline std::string RingBytes(int start, const std::vector<int>& slots) {
    ByteString bytes;
    bytes.U16(static_cast<std::uint16_t>(start)).U16(static_cast<std::uint16_t>(slots.size()));
    for (const int number : slots)
        bytes.Raw(number < 0 ? std::string(kRecordSize, '\0') : PointBytes(RingFix(number)));
    return bytes.Bytes();
}

inline std::vector<int> UpTo(int count) {
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i) numbers.push_back(i);
    return numbers;
}

// A note of an append; what it says does not matter here.
inline std::string NoteBytes(std::size_t size) {
    std::string note;
    for (std::size_t i = 0; i < size; ++i) note += static_cast<char>(i * 37);
    ByteString bytes;
    bytes.U32(Remainder<std::uint32_t>(note, 0xedb88320)).U32(static_cast<std::uint32_t>(size)).Raw(note);
    return bytes.Bytes();
}

}  // namespace host
