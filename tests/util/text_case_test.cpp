// Folding to upper case: the letters a to z, and nothing else in any locale.
#include <clocale>

#include <gtest/gtest.h>

#include "tests/support/german_locale.h"
#include "util/text.h"

namespace {

std::string Upper(std::string text) {
    UpString(text);
    return text;
}

std::wstring Upper(std::wstring text) {
    UpWString(text);
    return text;
}

// Bytes 0 to 255 in one text, and the same with a to z made A to Z by hand.
std::string AllBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return bytes;
}
std::string AllBytesUpper() { return AllBytes().replace('a', 26, "ABCDEFGHIJKLMNOPQRSTUVWXYZ"); }

// e acute, wide a, Cyrillic a, y diaeresis, sharp s, dotless i: each has a capital elsewhere.
const std::wstring kLettersBeyondAscii = L"\u00E9\uFF41\u0430\u00FF\u00DF\u0131";

}  // namespace

TEST(UpString, EveryByte_OnlyTheLettersAToZChange) { EXPECT_EQ(Upper(AllBytes()), AllBytesUpper()); }

TEST(UpString, EmptyText_StaysEmpty) { EXPECT_EQ(Upper(std::string()), ""); }

TEST(UpString, ZeroInside_DoesNotEndTheText) {
    EXPECT_EQ(Upper(std::string("ab\0cd", 5)), std::string("AB\0CD", 5));
}

TEST(UpString, BytesOfDoubleByteCharacters_Stay) { EXPECT_EQ(Upper(std::string("a\xD6\xD0z")), "A\xD6\xD0Z"); }

TEST(UpString, GermanLocale_ChangesNothing) {
    const GermanLocale german;
    if (!german.Active()) GTEST_SKIP() << "no German locale can be made here (localedef, package locales)";
    EXPECT_EQ(Upper(AllBytes()), AllBytesUpper());
}

TEST(UpWString, Extension_IsFolded) { EXPECT_EQ(Upper(std::wstring(L"gPx1_.")), L"GPX1_."); }

TEST(UpWString, EmptyText_StaysEmpty) { EXPECT_EQ(Upper(std::wstring()), L""); }

TEST(UpWString, ZeroInside_DoesNotEndTheText) {
    EXPECT_EQ(Upper(std::wstring(L"ab\0cd", 5)), std::wstring(L"AB\0CD", 5));
}

TEST(UpWString, LettersBeyondAscii_Stay) { EXPECT_EQ(Upper(kLettersBeyondAscii), kLettersBeyondAscii); }

TEST(UpWString, EveryUnit_OnlyTheLettersAToZChange) {
    for (wchar_t unit = 0; unit < 0xFFFF; ++unit) {
        const wchar_t expected = unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - L'a' + L'A') : unit;
        ASSERT_EQ(Upper(std::wstring(1, unit))[0], expected) << static_cast<unsigned>(unit);
    }
}

TEST(UpWString, OtherLocales_ChangeNothing) {
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) GTEST_SKIP() << "no UTF-8 locale here";
    EXPECT_EQ(Upper(kLettersBeyondAscii + L"az"), kLettersBeyondAscii + L"AZ");
    std::setlocale(LC_ALL, "C");
}
