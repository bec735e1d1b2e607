// From the ANSI code page to UTF-16: AnsciToWchar and ChangeStringToWString.
#include <gtest/gtest.h>

#include "tests/util/text_fixture.h"
#include "util/text.h"

namespace {

std::wstring Changed(const std::string& in) {
    std::wstring out = L"earlier content";
    ChangeStringToWString(out, in);
    return out;
}

}  // namespace

class AnsiToWide : public TextTest {};

TEST_F(AnsiToWide, Text_IsWrittenWithoutTerminator) {
    Watched<wchar_t> dst(10);
    AnsciToWchar("abc", dst.Get(), 10);
    EXPECT_EQ(dst.First(3), L"abc");
    EXPECT_TRUE(dst.UntouchedFrom(3));
}

TEST_F(AnsiToWide, ClearedDestination_IsATerminatedText) {
    wchar_t dst[10] = {};
    AnsciToWchar("abc", dst, 10);
    EXPECT_EQ(std::wstring(dst, 10), std::wstring(L"abc") + std::wstring(7, L'\0'));
}

TEST_F(AnsiToWide, TextThatFillsTheDestination_IsWrittenWhole) {
    Watched<wchar_t> dst(3);
    AnsciToWchar("abc", dst.Get(), 3);
    EXPECT_EQ(dst.First(3), L"abc");
    EXPECT_TRUE(dst.UntouchedFrom(3));
}

TEST_F(AnsiToWide, TextTooLong_WritesNothingBehindTheDestination) {
    for (int room = 1; room < 6; ++room) {
        Watched<wchar_t> dst(static_cast<std::size_t>(room));
        AnsciToWchar("abcdef", dst.Get(), room);
        EXPECT_TRUE(dst.UntouchedFrom(static_cast<std::size_t>(room))) << room;
    }
}

TEST_F(AnsiToWide, NoRoomOrNegativeRoom_WritesNothing) {
    for (const int room : {0, -1, -1000}) {
        Watched<wchar_t> dst(4);
        AnsciToWchar("abc", dst.Get(), room);
        EXPECT_TRUE(dst.Untouched()) << room;
    }
}

TEST_F(AnsiToWide, EmptyText_WritesNothing) {
    Watched<wchar_t> dst(4);
    AnsciToWchar("", dst.Get(), 4);
    EXPECT_TRUE(dst.Untouched());
}

TEST_F(AnsiToWide, NullText_WritesNothing) {
    Watched<wchar_t> dst(4);
    AnsciToWchar(nullptr, dst.Get(), 4);
    EXPECT_TRUE(dst.Untouched());
}

TEST_F(AnsiToWide, DoubleByteCharacters_AreOneUnitEach) {
    Watched<wchar_t> dst(10);
    AnsciToWchar(("A" + kZhong936 + kEuro936 + kEAcute936).c_str(), dst.Get(), 10);
    EXPECT_EQ(dst.First(4), L"A" + kZhong + kEuro + kEAcute);
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(AnsiToWide, BackslashAsSecondByte_IsPartOfItsCharacter) {
    Watched<wchar_t> dst(10);
    AnsciToWchar("\x81\x5C", dst.Get(), 10);
    EXPECT_EQ(dst.First(1), L"\u4E57");
    EXPECT_TRUE(dst.UntouchedFrom(1));
}

TEST_F(AnsiToWide, BrokenDoubleByteCharacter_IsReplaced) {
    Watched<wchar_t> lead(4), pair(4);
    AnsciToWchar("a\xD6", lead.Get(), 4);
    EXPECT_EQ(lead.First(2), L"a?");
    AnsciToWchar(
        "\xC4\x31"
        "b",
        pair.Get(), 4);
    EXPECT_EQ(pair.First(2), L"?b");
}

TEST_F(AnsiToWide, WesternCodePage_IsOneUnitAByte) {
    SetAnsiCodePage(kWestern);
    Watched<wchar_t> dst(10);
    AnsciToWchar((kEAcute1252 + kEuro1252 + "\xD6\xD0").c_str(), dst.Get(), 10);
    EXPECT_EQ(dst.First(4), kEAcute + kEuro + L"\u00D6\u00D0");
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(AnsiToWide, Utf8AsCodePage_GivesSurrogatePairs) {
    SetAnsiCodePage(kUtf8);
    Watched<wchar_t> dst(10);
    AnsciToWchar((kZhongUtf8 + kSmileUtf8).c_str(), dst.Get(), 10);
    EXPECT_EQ(dst.First(3), kZhong + kSmile);
    EXPECT_TRUE(dst.UntouchedFrom(3));
}

TEST_F(AnsiToWide, EveryByte_WritesInsideTheDestinationOnly) {
    for (const unsigned codePage : kAllCodePages) {
        SetAnsiCodePage(codePage);
        for (int first = 1; first < 256; ++first)
            for (int second = 1; second < 256; second += 3)
                for (int room = 1; room <= 2; ++room) {
                    const char text[] = {static_cast<char>(first), static_cast<char>(second), '\0'};
                    Watched<wchar_t> dst(2);
                    AnsciToWchar(text, dst.Get(), room);
                    ASSERT_TRUE(dst.UntouchedFrom(static_cast<std::size_t>(room)))
                        << codePage << ": " << first << ' ' << second;
                }
    }
}

class AnsiToWideString : public TextTest {};

TEST_F(AnsiToWideString, Text_ReplacesTheOldContent) { EXPECT_EQ(Changed("a" + kZhong936), L"a" + kZhong); }

TEST_F(AnsiToWideString, EmptyText_EmptiesTheString) { EXPECT_EQ(Changed(""), L""); }

TEST_F(AnsiToWideString, ZeroInside_EndsTheText) { EXPECT_EQ(Changed(std::string("ab\0cd", 5)), L"ab"); }

TEST_F(AnsiToWideString, LongestText_IsTakenWhole) {
    for (const std::size_t length : {259u, 260u}) {
        EXPECT_EQ(Changed(std::string(length, 'x')), std::wstring(length, L'x'));
        std::string chinese;
        for (std::size_t i = 0; i < length; ++i) chinese += kZhong936;
        EXPECT_EQ(Changed(chinese), std::wstring(length, kZhong[0])) << "units count, not bytes";
    }
}

TEST_F(AnsiToWideString, TextTooLong_IsEmptyOrCut) {
    const std::wstring out = Changed(std::string(261, 'x'));
    EXPECT_LE(out.size(), 260u);
    EXPECT_EQ(out, std::wstring(out.size(), L'x'));
}
