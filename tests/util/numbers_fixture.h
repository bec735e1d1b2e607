// Numbers as the library reads and writes them, beside the C library.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/c_number.h"
#include "util/numbers.h"

inline std::string Written(double value) {
    char text[numbers::kRealRoom];
    return {text, numbers::WriteReal(value, text)};
}

inline std::string Written(std::int32_t value) {
    char text[numbers::kIntegerRoom];
    return {text, numbers::WriteInteger(value, text)};
}

// By the C library, in whatever locale the process has.
inline std::string Printed(double value) {
    char text[numbers::kRealRoom + 1];
    std::snprintf(text, sizeof text, "%f", value);
    return text;
}

inline std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

// The C library reads the same text; its process locale is the C locale unless a test changes it.
inline ::testing::AssertionResult ReadsAsAtof(const std::string& text) {
    const double ours = numbers::ParseReal(text);
    const double expected = RealByCLibrary(text);
    if (std::isnan(expected) ? std::isnan(ours) && std::signbit(ours) == std::signbit(expected)
                             : Bits(ours) == Bits(expected))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << '"' << text << "\": " << ours << ", not " << expected;
}
