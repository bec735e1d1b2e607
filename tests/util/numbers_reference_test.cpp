// Numbers as texts at random, above all where a short way of writing and reading them ends: the C library must
// write and read the same.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/rounds.h"
#include "tests/support/seed.h"
#include "tests/util/numbers_fixture.h"

namespace {

class NumberReference : public ::testing::Test {
 protected:
    std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(m_random() % limit); }
    double RealBelow(std::uint64_t limit) { return static_cast<double>(m_random() % limit); }
    bool OneIn(unsigned count) { return Below(count) == 0; }

    double Sign() { return OneIn(2) ? -1.0 : 1.0; }
    // A few doubles up or down, from one above 0.
    double Beside(double value) { return std::bit_cast<double>(Bits(value) + Below(9) - 4); }
    // Of any 53 bits; from 2^lowest to below 2^(highest + 1).
    double OfAnyBits(int lowest, int highest) {
        const auto exponent =
            1023 + lowest + static_cast<int>(Below(static_cast<unsigned>(highest - lowest) + 1));
        return std::bit_cast<double>(static_cast<std::uint64_t>(exponent) << 52 | m_random() >> 12);
    }

    std::string Digits(std::size_t count) { return TextOf("0123456789", count); }
    std::string TextOf(std::string_view alphabet, std::size_t count) {
        std::string text(count, ' ');
        for (char& c : text) c = alphabet[Below(alphabet.size())];
        return text;
    }
    // Zeros and digits, a point anywhere among them or none.
    std::string Decimal() {
        std::string text = OneIn(4) ? std::string(Below(25), '0') : std::string();
        text += Digits(OneIn(8) ? Below(40) : 1 + Below(25));
        if (!OneIn(4)) text.insert(Below(text.size() + 1), ".");
        return text;
    }
    std::string Exponent() {
        constexpr std::string_view kMarks[] = {"e", "E", "e+", "e-", "E-", "e--", "e "};
        return std::string(kMarks[Below(std::size(kMarks))]) + Digits(Below(4));
    }
    // What may stand before a number and behind it.
    std::string Front() { return OneIn(4) ? TextOf("-+ \t\n\v\f\r0", Below(4)) : OneIn(2) ? "-" : ""; }
    std::string Tail() { return OneIn(4) ? TextOf("0.,-+eExXpPaAinfN<\"' \t\xC3", Below(5)) : ""; }

    std::mt19937_64 m_random{Seed(20010909)};
};

using WriteRealReference = NumberReference;
using ParseRealReference = NumberReference;
using ReadPlainRealReference = NumberReference;
using ParseIntegerReference = NumberReference;

// A minus sign or none, digits with a point or none among them: the characters these take, 0 without a digit.
std::size_t PlainSize(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789";
    const auto digitsAt = [&](std::size_t at) {
        return std::min(text.find_first_not_of(kDigits, at), text.size());
    };
    const std::size_t begin = text.starts_with('-') ? 1 : 0;
    const std::size_t whole = digitsAt(begin);
    if (whole == text.size() || text[whole] != '.') return whole == begin ? 0 : whole;
    const std::size_t end = digitsAt(whole + 1);
    return end == begin + 1 ? 0 : end;
}

}  // namespace

// A half of a millionth is where rounding turns. The nearest doubles lie on it, or a hair beside it.
TEST_F(WriteRealReference, BesideHalvesOfAMillionth_IsAsPrintfWritesIt) {
    for (int i = 0; i < Rounds(2000000); ++i) {
        const double millionths = std::floor(OfAnyBits(0, 50));
        const double value = Sign() * Beside((millionths + 0.5) * 1e-6);
        ASSERT_EQ(Written(value), Printed(value)) << Bits(value);
    }
}

// Multiples of 2^-7 are the coarsest whose millionths are halves.
TEST_F(WriteRealReference, ExactHalves_AreAsPrintfWritesThem) {
    for (int i = 0; i < Rounds(200000); ++i) ASSERT_EQ(Written(i / 128.0), Printed(i / 128.0));
    for (int i = 0; i < Rounds(500000); ++i) {
        const double value = Sign() * Beside(RealBelow(std::uint64_t{1} << 38) / 128);
        ASSERT_EQ(Written(value), Printed(value)) << Bits(value);
    }
}

// Whole numbers, millionths, and the largest that are written the short way.
TEST_F(WriteRealReference, BesideWhereTheDigitsTurn_IsAsPrintfWritesIt) {
    for (int i = 0; i < Rounds(1000000); ++i) {
        const double turns[] = {std::floor(OfAnyBits(0, 31)),
                                std::floor(OfAnyBits(0, 50)) * 1e-6,
                                1e9,
                                1e9 - 0.5e-6,
                                1e9 - static_cast<double>(Below(100)) * 0.5e-6,
                                0x1p31,
                                0x1p32};
        const double value = Sign() * Beside(turns[Below(std::size(turns))]);
        ASSERT_EQ(Written(value), Printed(value)) << Bits(value);
    }
}

// As altitudes come out of their fields.
TEST_F(WriteRealReference, Floats_AreAsPrintfWritesThem) {
    for (int i = 0; i < Rounds(1000000); ++i) {
        const auto value = static_cast<float>(Sign() * OfAnyBits(-30, 30));
        ASSERT_EQ(Written(value), Printed(value)) << Bits(value);
    }
}

TEST_F(WriteRealReference, AnyBits_AreAsPrintfWritesThem) {
    for (int i = 0; i < Rounds(1500000); ++i) {
        const double value = OneIn(16) ? std::bit_cast<double>(m_random()) : Sign() * OfAnyBits(-45, 31);
        if (std::isnan(value)) continue;  // not every C library writes its sign
        ASSERT_EQ(Written(value), Printed(value)) << Bits(value);
    }
}

TEST_F(ParseRealReference, Decimals_AreReadAsAtofReadsThem) {
    for (int i = 0; i < Rounds(2000000); ++i) {
        std::string text = Front() + Decimal();
        if (OneIn(8)) text += Exponent();
        ASSERT_TRUE(ReadsAsAtof(text + Tail()));
    }
}

// Written with too few digits to come back, with just enough and with more.
TEST_F(ParseRealReference, PrintedDoubles_AreReadAsAtofReadsThem) {
    char text[64];
    for (int i = 0; i < Rounds(1000000); ++i) {
        const int precision = static_cast<int>(Below(22));
        std::snprintf(text, sizeof text, OneIn(4) ? "%.*e" : "%.*f", precision, Sign() * OfAnyBits(-20, 40));
        ASSERT_TRUE(ReadsAsAtof(text));
    }
}

// Half-way between two doubles, and a digit behind all the others that turns the scale.
TEST_F(ParseRealReference, HalvesBetweenDoubles_AreReadAsAtofReadsThem) {
    char text[128];
    for (int i = 0; i < Rounds(300000); ++i) {
        const auto half = static_cast<double>((std::uint64_t{1} << 53) + m_random() % (std::uint64_t{1} << 53));
        std::snprintf(text, sizeof text, "%.0f", half);
        const std::string digits = text;
        const char last = static_cast<char>(digits.back() + (OneIn(2) ? 0 : '1' <= digits.back() ? -1 : 1));
        ASSERT_TRUE(ReadsAsAtof(digits.substr(0, digits.size() - 1) + last + "." + Digits(Below(5))));
        ASSERT_TRUE(ReadsAsAtof(digits + "." + std::string(Below(20), '0') + Digits(1)));
    }
}

TEST_F(ParseRealReference, AnyTexts_AreReadAsAtofReadsThem) {
    for (int i = 0; i < Rounds(1000000); ++i)
        ASSERT_TRUE(ReadsAsAtof(TextOf("0019..eE+-xXpPafinN( ", Below(12))));
}

// Behind a plain number stands what ends it for every reader.
TEST_F(ReadPlainRealReference, AnyTexts_AreTakenAsFarAsTheyArePlainAndReadAsAtofReadsThem) {
    int plain = 0;
    for (int i = 0; i < Rounds(2000000); ++i) {
        const std::string text =
            OneIn(2) ? TextOf("0123456789012345678.-", Below(26)) : Front() + Decimal() + Tail();
        double value = 0.0;
        const char* const end = numbers::ReadPlainReal(text.c_str(), value);
        const std::size_t size = PlainSize(text);
        ASSERT_EQ(end == nullptr ? 0 : end - text.c_str(), static_cast<std::ptrdiff_t>(size)) << text;
        if (size == 0) continue;
        ++plain;
        const std::string number = text.substr(0, size);
        ASSERT_EQ(Bits(value), Bits(RealByCLibrary(number))) << number;
        ASSERT_EQ(Bits(value), Bits(numbers::ParseReal(number))) << number;
    }
    EXPECT_GT(plain, Rounds(1000000));  // enough of both kinds that the comparison means something
    EXPECT_LT(plain, Rounds(1900000));
}

// The low 32 bits of the nearest number that has 64.
TEST_F(ParseIntegerReference, AnyTexts_AreReadAsTheCLibraryReadsThem) {
    constexpr std::uint64_t kEdges[] = {
        0, 1u << 31, std::uint64_t{1} << 32, std::uint64_t{1} << 63, ~std::uint64_t{0}, 999999999999999999};
    for (int i = 0; i < Rounds(1000000); ++i) {
        std::string text = Front();
        if (OneIn(3))
            text += std::to_string(kEdges[Below(std::size(kEdges))] + Below(21) - 10);
        else
            text += OneIn(2) ? Digits(Below(25)) : TextOf("0123456789-+ x.", Below(12));
        text += Tail();
        const auto expected = static_cast<std::uint32_t>(std::strtoll(text.c_str(), nullptr, 10));
        ASSERT_EQ(static_cast<std::uint32_t>(numbers::ParseInteger(text)), expected) << text;
    }
}

TEST_F(NumberReference, AnyInteger_IsWrittenAsPrintfWritesIt) {
    for (int i = 0; i < Rounds(1000000); ++i) {
        const auto value = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_random()) >> Below(32));
        char text[16];
        std::snprintf(text, sizeof text, "%d", value);
        ASSERT_EQ(Written(value), text);
    }
}
