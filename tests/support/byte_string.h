// The bytes of a file, put together field by field as its description states them: little-endian, whatever
// this machine's byte order, and without any helper of the library.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

class ByteString {
 public:
    // The first `width` bytes of the text, filled up with zeros.
    ByteString& Text(std::string text, std::size_t width) {
        text.resize(width, '\0');
        return Raw(text);
    }
    ByteString& Raw(const std::string& bytes) {
        m_bytes += bytes;
        return *this;
    }
    ByteString& U16(std::uint16_t value) { return Little(value, 2); }
    ByteString& U32(std::uint32_t value) { return Little(value, 4); }
    ByteString& I32(std::int32_t value) { return U32(static_cast<std::uint32_t>(value)); }
    ByteString& F32(float value) { return U32(std::bit_cast<std::uint32_t>(value)); }
    ByteString& F64(double value) { return Little(std::bit_cast<std::uint64_t>(value), 8); }

    const std::string& Bytes() const { return m_bytes; }

 private:
    ByteString& Little(std::uint64_t value, int width) {
        for (int i = 0; i < width; ++i) m_bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
        return *this;
    }

    std::string m_bytes;
};
