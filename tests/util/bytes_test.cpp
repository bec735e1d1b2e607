// Little-endian fields, byte by byte.
#include "util/bytes.h"

#include <string>

#include <gtest/gtest.h>

namespace {

template <typename Field>
std::string Stored(Field value) {
    unsigned char bytes[sizeof(Field) + 1];
    bytes[sizeof(Field)] = '#';
    bytes::StoreLittleEndian(value, bytes);
    return std::string(reinterpret_cast<char*>(bytes), sizeof bytes);
}

template <typename Field>
Field Loaded(const std::string& bytes) {
    return bytes::LoadLittleEndian<Field>(reinterpret_cast<const unsigned char*>(bytes.data()));
}

}  // namespace

TEST(LittleEndian, Stored_IsLeastSignificantByteFirst) {
    EXPECT_EQ(Stored<std::uint8_t>(0x81), "\x81#");
    EXPECT_EQ(Stored<std::uint16_t>(0x8182), "\x82\x81#");
    EXPECT_EQ(Stored<std::uint32_t>(0x81828384), "\x84\x83\x82\x81#");
    EXPECT_EQ(Stored<std::uint64_t>(0x8182838485868788), "\x88\x87\x86\x85\x84\x83\x82\x81#");
}

TEST(LittleEndian, Loaded_IsTheValueStored) {
    EXPECT_EQ(Loaded<std::uint8_t>("\xFF"), 0xFF);
    EXPECT_EQ(Loaded<std::uint16_t>("\xFE\xFF"), 0xFFFE);
    EXPECT_EQ(Loaded<std::uint32_t>("\xFD\xFF\xFF\xFF"), 0xFFFFFFFD);
    EXPECT_EQ(Loaded<std::uint64_t>("\xFC\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), 0xFFFFFFFFFFFFFFFC);
}

TEST(LittleEndian, AnyAddress_WillDo) {
    unsigned char bytes[12] = {};
    for (unsigned char* at = bytes; at < bytes + 8; ++at) {
        bytes::StoreLittleEndian<std::uint32_t>(0xA1B2C3D4, at);
        EXPECT_EQ(bytes::LoadLittleEndian<std::uint32_t>(at), 0xA1B2C3D4);
    }
}
