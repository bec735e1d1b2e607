// Little-endian fields of our files, on whatever machine this runs.
// The point record itself is stored raw (track/point.h says why that is the same thing).
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

// Point records are stored as they lie in memory; on a big-endian machine they would have to be turned round
// first.
static_assert(std::endian::native == std::endian::little, "point records are stored raw");

namespace bytes {

// Writes the low sizeof(Field) bytes of `value`, least significant first; `to` must have that much room.
template <typename Field>
void StoreLittleEndian(Field value, unsigned char* to) {
    static_assert(std::is_unsigned_v<Field>);
    for (std::size_t i = 0; i < sizeof(Field); ++i) to[i] = static_cast<unsigned char>(value >> (8 * i));
}

template <typename Field>
Field LoadLittleEndian(const unsigned char* from) {
    static_assert(std::is_unsigned_v<Field>);
    Field value = 0;
    for (std::size_t i = 0; i < sizeof(Field); ++i)
        value = static_cast<Field>(value | static_cast<Field>(static_cast<Field>(from[i]) << (8 * i)));
    return value;
}

}  // namespace bytes
