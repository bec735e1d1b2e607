// Code pages and watched buffers for the tests of text conversion.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "platform/device.h"

inline constexpr unsigned kChinese = 936, kWestern = 1252, kUtf8 = 65001;
inline constexpr unsigned kAllCodePages[] = {kChinese, kWestern, kUtf8};

// The same characters in every encoding of interest; '?' stands for what a code page lacks.
inline const std::wstring kZhong = L"\u4E2D", kEuro = L"\u20AC", kEAcute = L"\u00E9";
inline const std::wstring kSmile = {wchar_t{0xD83D}, wchar_t{0xDE00}};  // U+1F600 as two code units
inline const std::string kZhongUtf8 = "\xE4\xB8\xAD", kEuroUtf8 = "\xE2\x82\xAC", kEAcuteUtf8 = "\xC3\xA9";
inline const std::string kSmileUtf8 = "\xF0\x9F\x98\x80";
inline const std::string kZhong936 = "\xD6\xD0", kEuro936 = "\x80", kEAcute936 = "\xA8\xA6";
inline const std::string kEuro1252 = "\x80", kEAcute1252 = "\xE9";

// Starts in code page 936 and leaves it so.
class TextTest : public ::testing::Test {
 protected:
    TextTest() { SetAnsiCodePage(kChinese); }
    ~TextTest() override { SetAnsiCodePage(kChinese); }
};

// Room for a result, filled with a mark and with more of it on both sides, so that every element written shows.
template <typename Unit>
class Watched {
 public:
    static constexpr Unit kMark = Unit('#');
    explicit Watched(std::size_t room) : m_units(room + 2 * kSide, kMark) {}

    Unit* Get() { return m_units.data() + kSide; }
    // The first `count` elements.
    std::basic_string<Unit> First(std::size_t count) const { return m_units.substr(kSide, count); }
    // Whether nothing was written before the room, nor from the given element on.
    bool UntouchedFrom(std::size_t index) const {
        const auto isMark = [](Unit unit) { return unit == kMark; };
        return std::all_of(m_units.begin(), m_units.begin() + kSide, isMark) &&
               std::all_of(m_units.begin() + kSide + static_cast<std::ptrdiff_t>(index), m_units.end(), isMark);
    }
    bool Untouched() const { return UntouchedFrom(0); }

 private:
    static constexpr std::ptrdiff_t kSide = 32;
    std::basic_string<Unit> m_units;
};
