// Conversions between code pages and UTF-16: sizes, replacements, and the pages themselves.
#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/device.h"
#include "platform/device_state.h"
#include "tests/support/machine.h"

namespace {

using platform::kAnsiCodePage;
using platform::kUtf8CodePage;
using platform::MultiByteToWideChar;
using platform::WideCharToMultiByte;

constexpr unsigned kChinese = 936;
constexpr unsigned kWestern = 1252;
constexpr unsigned kUnknown = 12345;

int Length(const auto& text) { return static_cast<int>(text.size()); }

std::wstring Wide(unsigned page, const std::string& bytes) {
    std::wstring wide(bytes.size() + 1, L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(page, bytes.data(), Length(bytes), wide.data(), Length(wide))));
    return wide;
}

std::string Narrow(unsigned page, const std::wstring& wide) {
    std::string bytes(wide.size() * 4 + 1, '\0');
    bytes.resize(static_cast<std::size_t>(
        WideCharToMultiByte(page, wide.data(), Length(wide), bytes.data(), Length(bytes))));
    return bytes;
}

std::string Pair(unsigned code) { return {static_cast<char>(code >> 8), static_cast<char>(code)}; }

class CodePage : public ::testing::Test {
 protected:
    ~CodePage() override { SetAnsiCodePage(kChinese); }
};

// ---- sizes and lengths

TEST_F(CodePage, TerminatedText_CountsTheTerminator) {
    wchar_t wide[8] = {};
    EXPECT_EQ(MultiByteToWideChar(kChinese, "", -1, wide, 8), 1);
    EXPECT_EQ(MultiByteToWideChar(kChinese, "abc", -1, wide, 8), 4);
    EXPECT_STREQ(wide, L"abc");
    char narrow[8] = {};
    EXPECT_EQ(WideCharToMultiByte(kUtf8CodePage, L"", -1, narrow, 8), 1);
    EXPECT_EQ(WideCharToMultiByte(kUtf8CodePage, L"abc", -1, narrow, 8), 4);
    EXPECT_STREQ(narrow, "abc");
}

TEST_F(CodePage, ExplicitLength_AddsNoTerminatorAndTouchesNothingBehind) {
    std::wstring wide(6, L'#');
    EXPECT_EQ(MultiByteToWideChar(kChinese, "abcdef", 3, wide.data(), 6), 3);
    EXPECT_EQ(wide, L"abc###");
    std::string narrow(6, '#');
    EXPECT_EQ(WideCharToMultiByte(kChinese, L"abcdef", 3, narrow.data(), 6), 3);
    EXPECT_EQ(narrow, "abc###");
}

TEST_F(CodePage, EmbeddedZero_IsAnOrdinaryCharacter) {
    for (unsigned page : {kChinese, kWestern, kUtf8CodePage}) {
        EXPECT_EQ(Wide(page, std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
        EXPECT_EQ(Narrow(page, std::wstring(L"a\0b", 3)), std::string("a\0b", 3));
    }
}

TEST_F(CodePage, LengthZero_FailsAndWritesNothing) {
    wchar_t wide[2] = {L'#', L'#'};
    EXPECT_EQ(MultiByteToWideChar(kChinese, "abc", 0, wide, 2), 0);
    EXPECT_EQ(wide[0], L'#');
    char narrow[2] = {'#', '#'};
    EXPECT_EQ(WideCharToMultiByte(kChinese, L"abc", 0, narrow, 2), 0);
    EXPECT_EQ(narrow[0], '#');
}

TEST_F(CodePage, SizeZero_AsksForTheSizeAndWritesNothing) {
    wchar_t wide = L'#';
    EXPECT_EQ(MultiByteToWideChar(kUtf8CodePage,
                                  "\xE4\xB8\xAD"
                                  "a",
                                  -1, &wide, 0),
              3);
    EXPECT_EQ(MultiByteToWideChar(kChinese,
                                  "\xD6\xD0"
                                  "a",
                                  3, nullptr, 0),
              2);
    EXPECT_EQ(wide, L'#');
    char narrow = '#';
    EXPECT_EQ(WideCharToMultiByte(kUtf8CodePage,
                                  L"\x4E2D"
                                  L"a",
                                  -1, &narrow, 0),
              5);
    EXPECT_EQ(WideCharToMultiByte(kChinese,
                                  L"\x4E2D"
                                  L"a",
                                  2, nullptr, 0),
              3);
    EXPECT_EQ(narrow, '#');
}

TEST_F(CodePage, NegativeSizeOrNull_FailsAndWritesNothing) {
    wchar_t wide = L'#';
    EXPECT_EQ(MultiByteToWideChar(kChinese, "a", 1, &wide, -1), 0);
    EXPECT_EQ(MultiByteToWideChar(kChinese, nullptr, -1, &wide, 1), 0);
    EXPECT_EQ(MultiByteToWideChar(kChinese, "a", 1, nullptr, 1), 0);
    EXPECT_EQ(wide, L'#');
    char narrow = '#';
    EXPECT_EQ(WideCharToMultiByte(kChinese, L"a", 1, &narrow, -1), 0);
    EXPECT_EQ(WideCharToMultiByte(kChinese, nullptr, -1, &narrow, 1), 0);
    EXPECT_EQ(narrow, '#');
}

TEST_F(CodePage, TooSmall_FailsAndSplitsNoCharacter) {
    std::string narrow(8, '#');
    EXPECT_EQ(WideCharToMultiByte(kChinese, L"a\x4E2D\x6587", 3, narrow.data(), 4), 0);
    EXPECT_EQ(narrow, "a\xD6\xD0#####");
    narrow.assign(8, '#');
    EXPECT_EQ(WideCharToMultiByte(kUtf8CodePage, L"a\x4E2D\x6587", 3, narrow.data(), 6), 0);
    EXPECT_EQ(narrow, "a\xE4\xB8\xAD####");
    std::wstring wide(4, L'#');
    EXPECT_EQ(MultiByteToWideChar(kChinese, "abc", -1, wide.data(), 3), 0);
    EXPECT_EQ(wide, L"abc#");
}

TEST_F(CodePage, TooSmallForACharacterOfTwoUnits_Fails) {
    if (RunsUnderWine()) GTEST_SKIP() << "Wine writes half of the character, other than Windows";
    std::wstring wide(4, L'#');
    EXPECT_EQ(MultiByteToWideChar(kUtf8CodePage, "a\xF0\x9F\x98\x80", 5, wide.data(), 2), 0);
    EXPECT_EQ(wide, L"a###");
}

TEST_F(CodePage, ExactRoom_IsEnough) {
    char narrow[3] = {};
    EXPECT_EQ(WideCharToMultiByte(kChinese, L"a\x4E2D", 2, narrow, 3), 3);
    wchar_t wide[2] = {};
    EXPECT_EQ(MultiByteToWideChar(kUtf8CodePage, "\xF0\x9F\x98\x80", 4, wide, 2), 2);
}

TEST_F(CodePage, UnknownPage_Fails) {
    wchar_t wide = L'#';
    char narrow = '#';
    EXPECT_EQ(MultiByteToWideChar(kUnknown, "a", 1, &wide, 1), 0);
    EXPECT_EQ(WideCharToMultiByte(kUnknown, L"a", 1, &narrow, 1), 0);
    EXPECT_EQ(MultiByteToWideChar(kUnknown, "a", 1, nullptr, 0), 0);
    EXPECT_EQ(wide, L'#');
    EXPECT_EQ(narrow, '#');
}

// ---- UTF-8

TEST_F(CodePage, CharacterAboveTheBasicPlane_IsTwoUnits) {
    EXPECT_EQ(Wide(kUtf8CodePage, "\xF0\x9F\x98\x80"), L"\xD83D\xDE00");
    EXPECT_EQ(Narrow(kUtf8CodePage, L"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(MultiByteToWideChar(kUtf8CodePage, "\xF0\x9F\x98\x80", -1, nullptr, 0), 3);
}

TEST_F(CodePage, IllFormedUtf8_IsReplaced) {
    const std::map<std::string, std::wstring> expected = {
        {"a\x80"
         "b",
         L"a\xFFFD"
         L"b"},
        {"\xC0\x80", L"\xFFFD\xFFFD"},
        {"\xC1\xBF", L"\xFFFD\xFFFD"},
        {"\xE4\xBD", L"\xFFFD"},
        {"\xE4", L"\xFFFD"},
        {"\xE4"
         "ab",
         L"\xFFFD"
         L"ab"},
        {"\xE4\xBD"
         "a",
         L"\xFFFD"
         L"a"},
        {"\xED\xA0\x80", L"\xFFFD\xFFFD"},
        {"\xE0\x80\x80", L"\xFFFD\xFFFD"},
        {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD"},
        {"\xF0\x80\x80\x80", L"\xFFFD\xFFFD\xFFFD"},
        {"\xF0\x9F\x98"
         "z",
         L"\xFFFDz"},
        {"\xF0\x9F\x98", L"\xFFFD"},
        {"\xF5\x80", L"\xFFFD\xFFFD"},
        {"\xFF\xFE", L"\xFFFD\xFFFD"},
        {"\xE4\xE4\xB8\xAD", L"\xFFFD\x4E2D"},
    };
    for (const auto& [bytes, wide] : expected) {
        EXPECT_EQ(Wide(kUtf8CodePage, bytes), wide);
        EXPECT_EQ(MultiByteToWideChar(kUtf8CodePage, bytes.data(), Length(bytes), nullptr, 0), Length(wide));
    }
}

TEST_F(CodePage, LimitsOfUtf8Lengths_AreExact) {
    const std::map<std::string, std::wstring> expected = {
        {"\x7F", L"\x7F"},
        {"\xC2\x80", L"\x80"},
        {"\xDF\xBF", L"\x7FF"},
        {"\xE0\xA0\x80", L"\x800"},
        {"\xED\x9F\xBF", L"\xD7FF"},
        {"\xEE\x80\x80", L"\xE000"},
        {"\xEF\xBF\xBF", L"\xFFFF"},
        {"\xF0\x90\x80\x80", L"\xD800\xDC00"},
        {"\xF4\x8F\xBF\xBF", L"\xDBFF\xDFFF"},
    };
    for (const auto& [bytes, wide] : expected) {
        EXPECT_EQ(Wide(kUtf8CodePage, bytes), wide);
        EXPECT_EQ(Narrow(kUtf8CodePage, wide), bytes);
    }
}

TEST_F(CodePage, LoneOrReversedSurrogate_IsReplacedEach) {
    EXPECT_EQ(Narrow(kUtf8CodePage, L"\xD83D"), "\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(kUtf8CodePage, L"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(kUtf8CodePage,
                     L"\xD83D"
                     L"a"),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(Narrow(kUtf8CodePage, L"\xD83D\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST_F(CodePage, ByteOrderMark_IsKept) {
    EXPECT_EQ(Wide(kUtf8CodePage,
                   "\xEF\xBB\xBF"
                   "a"),
              L"\xFEFF"
              L"a");
    EXPECT_EQ(Narrow(kUtf8CodePage,
                     L"\xFEFF"
                     L"a"),
              "\xEF\xBB\xBF"
              "a");
}

TEST_F(CodePage, EveryCharacter_ComesBackFromUtf8) {
    for (char32_t c = 1; c < 0x110000; ++c) {
        if (c >= 0xD800 && c < 0xE000) continue;
        const bool isPair = c >= 0x10000;
        const std::wstring wide = isPair ? std::wstring{static_cast<wchar_t>(0xD7C0 + (c >> 10)),
                                                        static_cast<wchar_t>(0xDC00 + (c & 0x3FF))}
                                         : std::wstring{static_cast<wchar_t>(c)};
        ASSERT_EQ(Wide(kUtf8CodePage, Narrow(kUtf8CodePage, wide)), wide)
            << std::hex << static_cast<unsigned>(c);
    }
}

// ---- 936

TEST_F(CodePage, EveryDoubleByteOfTheSystem_ComesBack) {
    int count = 0;
    for (unsigned code = 0x8140; code <= 0xFEFE; ++code) {
        const std::wstring bySystem = WideByMachine(kChinese, Pair(code));
        const bool isUserDefined = !bySystem.empty() && bySystem[0] >= 0xE000 && bySystem[0] <= 0xF8FF;
        if ((code & 0xFF) < 0x40 || bySystem.size() != 1 || isUserDefined) continue;
        ASSERT_EQ(Wide(kChinese, Pair(code)), bySystem) << std::hex << code;
        ASSERT_EQ(Narrow(kChinese, bySystem), Pair(code)) << std::hex << code;
        ++count;
    }
    EXPECT_EQ(count, 21791);
}

TEST_F(CodePage, UserDefinedAreas_AreTheFirstPrivateCharacters) {
    std::vector<unsigned> codes;
    const auto addRows = [&codes](unsigned firstLead, unsigned lastLead, unsigned firstTrail,
                                  unsigned lastTrail) {
        for (unsigned lead = firstLead; lead <= lastLead; ++lead)
            for (unsigned trail = firstTrail; trail <= lastTrail; ++trail)
                if (trail != 0x7F) codes.push_back(lead << 8 | trail);
    };
    addRows(0xAA, 0xAF, 0xA1, 0xFE);
    addRows(0xF8, 0xFE, 0xA1, 0xFE);
    addRows(0xA1, 0xA7, 0x40, 0xA0);
    wchar_t unit = 0xE000;
    for (unsigned code : codes) {
        ASSERT_EQ(Wide(kChinese, Pair(code)), std::wstring(1, unit)) << std::hex << code;
        ASSERT_EQ(Narrow(kChinese, std::wstring(1, unit)), Pair(code)) << std::hex << code;
        ++unit;
    }
    EXPECT_EQ(unit, 0xE766);
}

// Every pair of a lead and a trail byte is a character: what is no other has a private one, in order.
TEST_F(CodePage, RestOfThePage_FollowsInPrivateCharacters) {
    wchar_t next = 0xE766;
    for (unsigned code = 0x8140; code <= 0xFEFE; ++code) {
        if ((code & 0xFF) < 0x40 || (code & 0xFF) == 0x7F || (code & 0xFF) == 0xFF) continue;
        const std::wstring wide = Wide(kChinese, Pair(code));
        ASSERT_TRUE(wide.size() == 1 && wide[0] != L'?') << std::hex << code;
        if (wide[0] < 0xE766 || wide[0] > 0xE864) continue;
        ASSERT_EQ(wide[0], next++) << std::hex << code;
        ASSERT_EQ(Narrow(kChinese, wide), Pair(code));
    }
    EXPECT_EQ(next, 0xE865);
    EXPECT_EQ(Wide(kChinese, "\xA2\xAB\xA9\x89\xFE\xA0"), L"\xE766\xE7E7\xE864");
}

TEST_F(CodePage, ChineseSingleBytes_EuroAndLast) {
    EXPECT_EQ(Wide(kChinese, "\x80"), L"\x20AC");
    EXPECT_EQ(Narrow(kChinese, L"\x20AC"), "\x80");
    EXPECT_EQ(Wide(kChinese,
                   "\xFF"
                   "a"),
              L"\xF8F5"
              L"a");
    EXPECT_EQ(Narrow(kChinese, L"\xF8F5"), "\xFF");
}

TEST_F(CodePage, LeadByteWithImpossibleTrail_TakesBothBytes) {
    EXPECT_EQ(Wide(kChinese,
                   "\xC4\x31"
                   "a"),
              L"?a");
    EXPECT_EQ(Wide(kChinese,
                   "\xC4\xFF"
                   "a"),
              L"?a");
    EXPECT_EQ(Wide(kChinese,
                   "\xC4\x7F"
                   "a"),
              L"?a");
}

// So a text keeps its end whatever it ends in.
TEST_F(CodePage, LeadByteAtTheEnd_IsAQuestionMarkAndLeavesTheTerminator) {
    EXPECT_EQ(Wide(kChinese, "a\xC4"), L"a?");
    wchar_t wide[4] = {L'#', L'#', L'#', L'#'};
    EXPECT_EQ(MultiByteToWideChar(kChinese, "a\xC4", -1, wide, 4), 3);
    EXPECT_EQ(std::wstring(wide, 4), std::wstring(L"a?\0#", 4));
    EXPECT_EQ(Wide(kChinese, std::string("\xC4\0a", 3)), std::wstring(L"?\0a", 3));
}

TEST_F(CodePage, LeadBytes_AreThoseOfTheWholePage) {
    const auto leads = [] {
        std::string found;
        for (unsigned byte = 0; byte <= 0xFF; ++byte)
            if (platform::IsDBCSLeadByte(static_cast<unsigned char>(byte))) found += static_cast<char>(byte);
        return found;
    };
    const auto range = [](unsigned first, unsigned last) {
        std::string bytes;
        for (unsigned byte = first; byte <= last; ++byte) bytes += static_cast<char>(byte);
        return bytes;
    };
    for (const unsigned page : {936u, 949u, 950u}) {
        ASSERT_TRUE(SetAnsiCodePage(page));
        EXPECT_EQ(leads(), range(0x81, 0xFE)) << page;
    }
    ASSERT_TRUE(SetAnsiCodePage(932));
    EXPECT_EQ(leads(), range(0x81, 0x9F) + range(0xE0, 0xFC));
    for (const unsigned page : {1252u, 65001u}) {
        ASSERT_TRUE(SetAnsiCodePage(page));
        EXPECT_EQ(leads(), "") << page;
    }
}

TEST_F(CodePage, TrailByteThatLooksLikeASeparator_StaysInItsCharacter) {
    EXPECT_EQ(Wide(kChinese, "\x81\x5C\x81\x7C"), WideByMachine(kChinese, "\x81\x5C\x81\x7C"));
    EXPECT_EQ(Wide(kChinese, "\x81\x5C").size(), 1u);
}

TEST_F(CodePage, NotInThePage_IsAQuestionMarkPerUnit) {
    EXPECT_EQ(Narrow(kChinese,
                     L"a\x0E01"
                     L"b"),
              "a?b");
    EXPECT_EQ(Narrow(kChinese, L"\xD83D\xDE00"), "??");
    EXPECT_EQ(Narrow(kWestern, L"\x4E2D"), "?");
    EXPECT_EQ(Narrow(kWestern, L"\xD83D\xDE00"), "??");
    EXPECT_EQ(Narrow(kChinese, L"\xFEFF"), "?");
}

TEST_F(CodePage, QuestionMark_IsItself) {
    EXPECT_EQ(Wide(kChinese, "?"), L"?");
    EXPECT_EQ(Narrow(kChinese, L"?"), "?");
}

// ---- 1252 and others

TEST_F(CodePage, WesternBytes_AllComeBack) {
    const std::map<unsigned, wchar_t> unassigned = {
        {0x81, 0x81}, {0x8D, 0x8D}, {0x8F, 0x8F}, {0x90, 0x90}, {0x9D, 0x9D}};
    for (unsigned byte = 1; byte < 0x100; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const auto known = unassigned.find(byte);
        const std::wstring wide =
            known == unassigned.end() ? WideByMachine(kWestern, text) : std::wstring(1, known->second);
        EXPECT_EQ(Wide(kWestern, text), wide) << std::hex << byte;
        EXPECT_EQ(Narrow(kWestern, wide), text) << std::hex << byte;
    }
}

TEST_F(CodePage, WidthsDifferFromPageToPage) {
    EXPECT_EQ(Narrow(kChinese, L"\xE9"), "\xA8\xA6");
    EXPECT_EQ(Narrow(kWestern, L"\xE9"), "\xE9");
    EXPECT_EQ(Narrow(kWestern, L"\x20AC"), "\x80");
    EXPECT_EQ(Narrow(kUtf8CodePage, L"\x4E2D"), "\xE4\xB8\xAD");
}

TEST_F(CodePage, PageZero_IsTheChosenOne) {
    EXPECT_EQ(platform::AnsiCodePage(), kChinese);
    EXPECT_EQ(Narrow(kAnsiCodePage, L"\x4E2D"), "\xD6\xD0");
    ASSERT_TRUE(SetAnsiCodePage(kWestern));
    EXPECT_EQ(platform::AnsiCodePage(), kWestern);
    EXPECT_EQ(Narrow(kAnsiCodePage, L"\xE9"), "\xE9");
    ASSERT_TRUE(SetAnsiCodePage(kUtf8CodePage));
    EXPECT_EQ(Narrow(kAnsiCodePage, L"\x4E2D"), "\xE4\xB8\xAD");
}

TEST_F(CodePage, PageThatCannotBeUsed_IsRefusedAndChangesNothing) {
    const unsigned kZero = 0, kDutchMainframe = 37, kSevenBit = 65000, kFourByteChinese = 54936,
                   kJapaneseMail = 50220;
    for (unsigned page :
         {kZero, kUnknown, kDutchMainframe, kSevenBit, kFourByteChinese, kJapaneseMail, 1200u, 930u}) {
        EXPECT_FALSE(SetAnsiCodePage(page)) << page;
        EXPECT_EQ(platform::AnsiCodePage(), kChinese);
    }
}

TEST_F(CodePage, OtherPagesOfTheSystem_CanBeChosen) {
    for (unsigned page : {932u, 949u, 950u, 1250u, 1251u, 1253u, 1258u})
        EXPECT_TRUE(SetAnsiCodePage(page)) << page;
    EXPECT_EQ(Wide(949, "\xB0\xA1"), WideByMachine(949, "\xB0\xA1"));
    EXPECT_EQ(Wide(1251, "\xC0"), L"\x0410");
    EXPECT_EQ(Narrow(1251, L"\x0410"), "\xC0");
}

// Those that converters know by a name rather than by a number.
TEST_F(CodePage, PagesWithNamesOfTheirOwn_CanBeChosen) {
    for (unsigned page : {20127u, 20866u, 21866u, 28592u, 28599u, 28603u})
        EXPECT_TRUE(SetAnsiCodePage(page)) << page;
    for (unsigned page : {28590u, 28600u, 28604u, 28606u}) EXPECT_FALSE(SetAnsiCodePage(page)) << page;
    EXPECT_EQ(Wide(28591, "\xE4\x80"), L"\xE4\x80");
    EXPECT_EQ(Wide(28605, "\xA4"), L"\x20AC");
    EXPECT_EQ(Narrow(20866, L"\x0410"), "\xE1");
}

TEST_F(CodePage, CharacterHeldTwice_IsWrittenAsTheSystemDoes) {
    const std::wstring romanOne = L"\x2160";  // 932 holds it at 8754 and among its extensions
    ASSERT_EQ(Wide(932, "\x87\x54"), romanOne);
    EXPECT_EQ(Narrow(932, romanOne), "\x87\x54");
}

TEST_F(CodePage, FirstUseOfAPage_MayBeOnManyThreads) {
    std::array<std::wstring, 8> results;
    std::vector<std::thread> threads;
    for (std::wstring& result : results)
        threads.emplace_back(
            [&result] { result = Wide(950, "\xA4\xA4") + Wide(1252, "\x80") + Wide(936, "\x80"); });
    for (std::thread& thread : threads) thread.join();
    for (const std::wstring& result : results) EXPECT_EQ(result, L"\x4E2D\x20AC\x20AC");
}

}  // namespace
