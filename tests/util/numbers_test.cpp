// Numbers as texts: each rule by its cases. At random, beside the C library:
// tests/util/numbers_reference_test.cpp.
#include "util/numbers.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/german_locale.h"
#include "tests/support/seed.h"
#include "tests/util/numbers_fixture.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Every way to write a real number, its ends, and what only looks like one.
const char* const kEveryForm[] = {"0",
                                  "-0",
                                  "1",
                                  "007",
                                  "1.25",
                                  "+1.25",
                                  " \t\n\v\f\r1",
                                  "1e5",
                                  "1E+5",
                                  "1e-5",
                                  "1.e2",
                                  "inf",
                                  "-INF",
                                  "Infinity",
                                  "infinit",
                                  "nan",
                                  "-nan",
                                  "NaN(12)",
                                  "nan(",
                                  "0x10",
                                  "0X1.8p1",
                                  "0x",
                                  "0xg",
                                  "0x.8",
                                  "0x.",
                                  "0xinf",
                                  "0x-1",
                                  "0xnan",
                                  "0x1p",
                                  "0x1p+",
                                  "-0x1p-3",
                                  "0x1p+-3",
                                  "0x1p-+3",
                                  "1e+-3",
                                  "4.9e-324",
                                  "2e-324",
                                  "2.5e-324",
                                  "1e-310",
                                  "0x1p-1074",
                                  "0x1p-1075",
                                  "0x1.8p-1075",
                                  "1.7976931348623157e308",
                                  "1.7976931348623159e308",
                                  "9007199254740993",
                                  "123456789012345",
                                  "1234567890123456",
                                  "0.000000000000001",
                                  "0000000000000000000001.5",
                                  "1 2"};

}  // namespace

TEST(ParseInteger, DigitsAndSign_AreRead) {
    EXPECT_EQ(numbers::ParseInteger("0"), 0);
    EXPECT_EQ(numbers::ParseInteger("012"), 12);
    EXPECT_EQ(numbers::ParseInteger("-16776961"), -16776961);
    EXPECT_EQ(numbers::ParseInteger("+7"), 7);
}

TEST(ParseInteger, LeadingBlanks_AreSkipped) { EXPECT_EQ(numbers::ParseInteger(" \t\n\v\f\r-5"), -5); }

TEST(ParseInteger, AnythingElse_EndsTheNumber) {
    EXPECT_EQ(numbers::ParseInteger("56Z"), 56);
    EXPECT_EQ(numbers::ParseInteger("56.250"), 56);
    EXPECT_EQ(numbers::ParseInteger("0x10"), 0);
    EXPECT_EQ(numbers::ParseInteger(std::string_view("1\0002", 3)), 1);
}

TEST(ParseInteger, NoDigit_IsZero) {
    for (const char* text : {"", "-", "+", "- 5", "--5", "+-5", "abc", "\u00e9"})
        EXPECT_EQ(numbers::ParseInteger(text), 0) << text;
}

TEST(ParseInteger, Beyond32Bits_KeepsTheLow32) {
    EXPECT_EQ(numbers::ParseInteger("4278190335"), -16776961);
    EXPECT_EQ(numbers::ParseInteger("2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(numbers::ParseInteger("4294967296"), 0);
}

TEST(ParseInteger, Beyond64Bits_IsTheNearestWith64) {
    EXPECT_EQ(numbers::ParseInteger("9223372036854775807"), -1);
    EXPECT_EQ(numbers::ParseInteger("9223372036854775808"), -1);
    EXPECT_EQ(numbers::ParseInteger("99999999999999999999999"), -1);
    EXPECT_EQ(numbers::ParseInteger("-9223372036854775808"), 0);
    EXPECT_EQ(numbers::ParseInteger("-99999999999999999999999"), 0);
}

TEST(ParseReal, Decimals_AreTheNearestDouble) {
    EXPECT_EQ(numbers::ParseReal("47.123456"), 47.123456);
    EXPECT_EQ(numbers::ParseReal("-0.1"), -0.1);
    EXPECT_EQ(numbers::ParseReal(".5"), 0.5);
    EXPECT_EQ(numbers::ParseReal("5."), 5.0);
    EXPECT_EQ(numbers::ParseReal("1e3"), 1000.0);
    EXPECT_EQ(numbers::ParseReal("12345678901234567890.123"), 12345678901234567890.123);
}

TEST(ParseReal, NegativeZero_KeepsItsSign) { EXPECT_TRUE(std::signbit(numbers::ParseReal("-0"))); }

TEST(ParseReal, NoNumber_IsZero) {
    for (const char* text : {"", " ", ".", "-", "+", "e5", ".e5", "abc", "- 1", "+-1", "--1", "-+1"})
        EXPECT_EQ(Bits(numbers::ParseReal(text)), Bits(0.0)) << text;
}

TEST(ParseReal, AnythingElse_EndsTheNumber) {
    EXPECT_EQ(numbers::ParseReal("1.5m"), 1.5);
    EXPECT_EQ(numbers::ParseReal("1,5"), 1.0);
    EXPECT_EQ(numbers::ParseReal("1.5.7"), 1.5);
    EXPECT_EQ(numbers::ParseReal("2e"), 2.0);
    EXPECT_EQ(numbers::ParseReal("2e+x"), 2.0);
    EXPECT_EQ(numbers::ParseReal(std::string_view("1\0002", 3)), 1.0);
}

TEST(ParseReal, OutOfRange_IsInfinityOrZero) {
    EXPECT_EQ(numbers::ParseReal("1e400"), kInfinity);
    EXPECT_EQ(numbers::ParseReal("-1e99999999999999999999"), -kInfinity);
    EXPECT_EQ(numbers::ParseReal("1e-400"), 0.0);
    EXPECT_TRUE(std::signbit(numbers::ParseReal("-1e-99999999999999999999")));
    EXPECT_EQ(numbers::ParseReal(std::string(400, '9')), kInfinity);
    EXPECT_EQ(numbers::ParseReal("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(numbers::ParseReal("0x1p5000"), kInfinity);
    EXPECT_EQ(numbers::ParseReal("0x1p-5000"), 0.0);
}

TEST(ParseReal, EveryForm_ReadsAsTheCLibraryReadsIt) {
    for (const char* text : kEveryForm) EXPECT_TRUE(ReadsAsAtof(text));
}

TEST(ReadPlainReal, PlainNumbers_EndWhereTheirCharactersEnd) {
    const auto taken = [](const char* text) {
        double value = 0.0;
        const char* const end = numbers::ReadPlainReal(text, value);
        return end == nullptr ? -1 : static_cast<int>(end - text);
    };
    EXPECT_EQ(taken("1.25\""), 4);
    EXPECT_EQ(taken("-0<"), 2);
    EXPECT_EQ(taken("5.<"), 2);
    EXPECT_EQ(taken(".5 "), 2);
    EXPECT_EQ(taken("123456789012345"), 15);
    EXPECT_EQ(taken("1.2.3"), 3);
    EXPECT_EQ(taken("-12345678901234567890.12345678901234567890<"), 42);
    for (const char* text : {"", "-", ".", "-.", "+1", " 1", "--1", "e"}) EXPECT_EQ(taken(text), -1) << text;
}

TEST(ReadPlainReal, NumberThatNoDoubleHolds_IsInfinity) {
    double value = 0.0;
    numbers::ReadPlainReal(("-" + std::string(400, '9')).c_str(), value);
    EXPECT_EQ(value, -kInfinity);
}

TEST(WriteInteger, EveryInteger_IsWrittenInFull) {
    EXPECT_EQ(Written(0), "0");
    EXPECT_EQ(Written(-16776961), "-16776961");
    EXPECT_EQ(Written(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(Written(std::numeric_limits<std::int32_t>::max()), "2147483647");
}

TEST(WriteReal, SixDecimals_AreWritten) {
    EXPECT_EQ(Written(1234.5), "1234.500000");
    EXPECT_EQ(Written(-0.5), "-0.500000");
    EXPECT_EQ(Written(0.0), "0.000000");
    EXPECT_EQ(Written(-0.0), "-0.000000");
    EXPECT_EQ(Written(0.9999999), "1.000000");
    EXPECT_EQ(Written(-0.0000001), "-0.000000");
}

TEST(WriteReal, NoNumber_IsWrittenAsAWord) {
    EXPECT_EQ(Written(kInfinity), "inf");
    EXPECT_EQ(Written(-kInfinity), "-inf");
    EXPECT_EQ(Written(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(Written(-std::numeric_limits<double>::quiet_NaN()), "-nan");
}

// 0.5 + 2^-7 millionths and the like: the exact value lies on a half, or a hair beside it.
TEST(WriteReal, HalfAMillionth_GoesToTheEvenDigit) {
    for (const double value :
         {0.0000005, 0.0000015, 0.5 / 64 / 15625, 1.5 / 64, 0.0078125, 0.0234375, 0.00390625, 12.0078125,
          12.0234375, 999999999.0078125, 0.0000014999999999999999}) {
        EXPECT_EQ(Written(value), Printed(value));
        EXPECT_EQ(Written(-value), Printed(-value));
        EXPECT_EQ(Written(std::nextafter(value, 1)), Printed(std::nextafter(value, 1)));
        EXPECT_EQ(Written(std::nextafter(value, 0)), Printed(std::nextafter(value, 0)));
    }
}

TEST(WriteReal, EveryMagnitude_IsWrittenAsPrintfWritesIt) {
    for (const double value :
         {1e9, 999999999.9999999, 999999999.99999988, 1e15, 9007199254740993.0, 1e22, 1e300,
          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()})
        EXPECT_EQ(Written(value), Printed(value));
}

TEST(WriteReal, NumberReadBack_IsWithinHalfAMillionth) {
    std::mt19937_64 random(Seed(8));
    std::uniform_real_distribution<double> degrees(-180, 180);
    for (int i = 0; i < 1000; ++i) {
        const double value = degrees(random);
        EXPECT_NEAR(numbers::ParseReal(Written(value)), value, 0.5000001e-6);
    }
}

namespace {

// Decimal comma and grouping, as in German.
class CommaPunctuation : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

}  // namespace

TEST(Numbers, LocaleWithDecimalComma_ChangesNothing) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
    EXPECT_EQ(Written(1234567.25), "1234567.250000");
    EXPECT_EQ(Written(12345678), "12345678");
    EXPECT_EQ(numbers::ParseReal("1.5e0"), 1.5);
    EXPECT_EQ(numbers::ParseReal("1,5"), 1.0);
    std::locale::global(before);
}

TEST(Numbers, ProcessLocaleWithDecimalComma_ChangesNothing) {
    const GermanLocale german;
    if (!german.Active()) GTEST_SKIP() << "no German locale can be made here (localedef, package locales)";
    EXPECT_EQ(Printed(0.5), "0,500000");
    EXPECT_EQ(Written(1e12), "1000000000000.000000");
    EXPECT_EQ(numbers::ParseReal("1.5e0"), 1.5);
    EXPECT_EQ(numbers::ParseReal("1,5"), 1.0);
}
