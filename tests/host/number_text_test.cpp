// Numbers in documents: host/text/number_text.h. Lengths of time: host/text/duration.h.
#include "host/text/number_text.h"

#include <random>

#include <gtest/gtest.h>

#include "host/text/duration.h"
#include "host/text/text.h"
#include "tests/support/seed.h"

namespace host {
namespace {

TEST(NumberText, Exact_IsTheShortestWithoutExponent) {
    EXPECT_EQ(ExactText(47.1), "47.1");
    EXPECT_EQ(ExactText(-0.0), "0");
    EXPECT_EQ(ExactText(1e-7), "0.0000001");
    EXPECT_EQ(ExactText(1e21), "1000000000000000000000");
}

TEST(NumberText, AnyValue_ReadsBackAsItself) {
    std::mt19937 random(Seed(1));
    std::uniform_real_distribution<double> degrees(-180, 180);
    for (int i = 0; i < 10000; ++i) {
        const double value = degrees(random);
        ASSERT_EQ(ReadNumber(ExactText(value)), value);
        ASSERT_EQ(static_cast<float>(*ReadNumber(SingleText(value))), static_cast<float>(value));
    }
}

TEST(NumberText, Single_ShowsNoDigitsThatAreNotKept) { EXPECT_EQ(SingleText(432.1000061035156), "432.1"); }

TEST(NumberText, WholeNumbersOnly_AreRead) {
    EXPECT_EQ(ReadNumber(" +8.5\n"), 8.5);
    EXPECT_EQ(ReadNumber("-1.5e2"), -150);
    for (const char* text : {"", " ", "abc", "47,1", "47.1 N", "nan", "inf", "+-1", "0x10", "1e999", "1 2"})
        EXPECT_EQ(ReadNumber(text), std::nullopt) << text;
}

TEST(Decimals, Zero_HasNoSign) {
    EXPECT_EQ(Decimals(-0.0, 1), "0.0");
    EXPECT_EQ(Decimals(-0.04, 1), "0.0");
    EXPECT_EQ(Decimals(-0.4, 0), "0");
    EXPECT_EQ(Decimals(-0.06, 1), "-0.1");
}

TEST(Duration, UnitsFromLargeToSmall_AreAdded) {
    EXPECT_EQ(ReadDuration("90"), 90);
    EXPECT_EQ(ReadDuration("15m"), 900);
    EXPECT_EQ(ReadDuration("1h30m"), 5400);
    EXPECT_EQ(ReadDuration("2d1s"), 172801);
    EXPECT_EQ(ReadDuration("1h5"), 3605);
}

TEST(Duration, OtherTexts_AreNone) {
    for (const char* text : {"", "h", "1x", "30m1h", "1h1h", "-5", "1.5h", "1 h", "99999999999"})
        EXPECT_EQ(ReadDuration(text), std::nullopt) << text;
}

}  // namespace
}  // namespace host
