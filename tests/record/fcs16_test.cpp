#include "record/fcs16.h"

#include <random>

#include <gtest/gtest.h>

#include "tests/record/log_track_fixture.h"
#include "tests/support/rounds.h"
#include "tests/support/seed.h"

namespace {

std::uint16_t CheckSequence(std::string_view bytes) {
    return fcs16::CheckSequence(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

TckPt AnyFix() {
    TckPt fix{};
    fix.dLatitude = 46.948;
    fix.dLongitude = 7.447;
    fix.lTime = 1'000'000'000;
    for (unsigned char& byte : fix.reserved) byte = 0xA5;
    return fix;
}

}  // namespace

TEST(Fcs16, PublishedText_HasThePublishedCheckValue) { EXPECT_EQ(CheckSequence("123456789"), 0x906E); }

TEST(Fcs16, NoBytes_GiveZero) { EXPECT_EQ(CheckSequence(""), 0x0000); }

TEST(Fcs16, RandomBytesOfEveryLength_GiveWhatTheDefinitionGivesBitByBit) {
    std::mt19937 random(Seed(20010909));
    for (std::size_t length = 0; length <= 100; ++length) {
        std::string bytes(length, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        EXPECT_EQ(CheckSequence(bytes), described::CheckSequence(bytes)) << length << " bytes";
    }
}

// Eight bytes are taken at a time, wherever the string begins.
TEST(Fcs16, RandomBytesAnywhere_GiveWhatTheDefinitionGivesBitByBit) {
    std::mt19937 random(Seed(20010910));
    std::string bytes(272, '\0');
    for (int i = 0; i < Rounds(200000); ++i) {
        bytes[random() % bytes.size()] = static_cast<char>(random());
        const std::size_t begin = random() % 16;
        const std::string_view text = std::string_view(bytes).substr(begin, random() % (i % 8 == 0 ? 257 : 65));
        ASSERT_EQ(CheckSequence(text), described::CheckSequence(text)) << begin << ' ' << text.size();
    }
}

TEST(Fcs16, StampedPoint_HoldsTheSequenceInBytes40And41AndNothingElseChanges) {
    TckPt fix = AnyFix();
    const std::string before = RawBytes(fix);
    fcs16::Stamp(fix);
    EXPECT_EQ(RawBytes(fix), described::Record(AnyFix()));
    EXPECT_EQ(RawBytes(fix).substr(0, 40), before.substr(0, 40));
    EXPECT_EQ(RawBytes(fix).substr(42), before.substr(42));
}

TEST(Fcs16, StampedPoint_IsValid) {
    TckPt fix = AnyFix();
    EXPECT_FALSE(fcs16::IsValid(fix));
    fcs16::Stamp(fix);
    EXPECT_TRUE(fcs16::IsValid(fix));
}

TEST(Fcs16, StampedTwice_StaysTheSame) {
    TckPt once = AnyFix();
    fcs16::Stamp(once);
    TckPt twice = once;
    fcs16::Stamp(twice);
    EXPECT_EQ(RawBytes(once), RawBytes(twice));
}

TEST(Fcs16, PointOfZeros_IsNotValid) { EXPECT_FALSE(fcs16::IsValid(TckPt{})); }

TEST(Fcs16, AnySingleBitTurnedInTheFirst42Bytes_IsFound) {
    const std::string intact = described::Record(AnyFix());
    for (std::size_t bit = 0; bit < 42 * 8; ++bit) {
        std::string damaged = intact;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
        EXPECT_FALSE(fcs16::IsValid(described::Point(damaged))) << "bit " << bit;
    }
}

TEST(Fcs16, LastSixBytes_AreNotChecked) {
    std::string record = described::Record(AnyFix());
    record.replace(42, 6, "abcdef");
    EXPECT_TRUE(fcs16::IsValid(described::Point(record)));
}
