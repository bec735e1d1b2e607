// From UTF-16 to the ANSI code page, and what is left of a text that is too long: WcharToChar.
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/seed.h"
#include "tests/util/text_fixture.h"
#include "util/text.h"

class WideToAnsi : public TextTest {
 protected:
    // What a destination of the given size holds afterwards, from its first byte to the last that was written.
    static std::string Converted(const std::wstring& text, int size) {
        Watched<char> dst(static_cast<std::size_t>(std::max(size, 0)));
        WcharToChar(dst.Get(), text.c_str(), size);
        std::size_t written = static_cast<std::size_t>(std::max(size, 0)) + 1;
        while (written > 0 && dst.UntouchedFrom(written - 1)) --written;
        EXPECT_TRUE(dst.UntouchedFrom(written)) << "written outside of the destination and its terminator";
        return dst.First(written);
    }
    static std::string Zeros(std::size_t count) { return std::string(count, '\0'); }
};

TEST_F(WideToAnsi, NullText_WritesNothing) {
    Watched<char> dst(4);
    WcharToChar(dst.Get(), nullptr, 4);
    EXPECT_TRUE(dst.Untouched());
}

TEST_F(WideToAnsi, ShortText_ClearsTheWholeDestination) { EXPECT_EQ(Converted(L"AB", 6), "AB" + Zeros(4)); }

TEST_F(WideToAnsi, EmptyText_ClearsTheWholeDestination) { EXPECT_EQ(Converted(L"", 5), Zeros(5)); }

TEST_F(WideToAnsi, EmptyTextWithoutRoom_IsATerminator) { EXPECT_EQ(Converted(L"", 0), Zeros(1)); }

TEST_F(WideToAnsi, TextThatFillsTheDestination_IsTerminatedOnePastIt) {
    EXPECT_EQ(Converted(L"ABCDE", 5), "ABCDE" + Zeros(1));
    EXPECT_EQ(Converted(L"A" + kZhong + kZhong, 5), "A" + kZhong936 + kZhong936 + Zeros(1));
}

TEST_F(WideToAnsi, TextTooLong_FillsTheDestinationWithoutTerminator) {
    EXPECT_EQ(Converted(L"ABCDEFG", 5), "ABCDE");
    EXPECT_EQ(Converted(L"ABCDEF", 5), "ABCDE");
}

TEST_F(WideToAnsi, DoubleByteCharacterThatDoesNotFit_EndsTheText) {
    EXPECT_EQ(Converted(L"AB" + kZhong + kZhong, 5), "AB" + kZhong936);
    EXPECT_EQ(Converted(L"AB" + kZhong + L"C" + kZhong, 5), "AB" + kZhong936 + "C");
}

TEST_F(WideToAnsi, AfterTheFirstThatDoesNotFit_NothingIsTaken) {
    EXPECT_EQ(Converted(L"AB" + kZhong + L"C", 3), "AB");
    EXPECT_EQ(Converted(kZhong + L"C", 1), "");
}

TEST_F(WideToAnsi, CutText_LeavesTheRestOfTheDestinationAlone) {
    Watched<char> dst(5);
    WcharToChar(dst.Get(), (L"AB" + kZhong + kZhong).c_str(), 5);
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(WideToAnsi, NoRoomOrNegativeRoom_WritesNothing) {
    for (const int room : {0, -1, -1000}) {
        Watched<char> dst(4);
        WcharToChar(dst.Get(), L"ABC", room);
        EXPECT_TRUE(dst.Untouched()) << room;
    }
}

TEST_F(WideToAnsi, UnitsUpToFF_CountOneThoughTheyTakeTwo) {
    const std::wstring twoLetters = kEAcute + kEAcute;
    EXPECT_EQ(Converted(twoLetters, 4), kEAcute936 + kEAcute936 + Zeros(1)) << "four bytes fit";
    EXPECT_EQ(Converted(twoLetters, 3), kEAcute936) << "counted as two bytes in all";
    EXPECT_EQ(Converted(twoLetters, 1), kEAcute936.substr(0, 1)) << "cut through the middle";
}

TEST_F(WideToAnsi, UnitsFrom100_CountTwoThoughTheyTakeOne) {
    const std::wstring threeEuros = kEuro + kEuro + kEuro;
    EXPECT_EQ(Converted(threeEuros, 3), "\x80\x80\x80" + Zeros(1));
    EXPECT_EQ(Converted(threeEuros, 2), "\x80\x80");
    EXPECT_EQ(Converted(threeEuros, 1), "");
    SetAnsiCodePage(kWestern);
    EXPECT_EQ(Converted(threeEuros + threeEuros, 5), "\x80\x80\x80\x80");
}

TEST_F(WideToAnsi, Utf8AsCodePage_IsCutByTheSameRule) {
    SetAnsiCodePage(kUtf8);
    EXPECT_EQ(Converted(kZhong + kZhong, 6), kZhongUtf8 + kZhongUtf8 + Zeros(1));
    EXPECT_EQ(Converted(kZhong + kZhong, 5), (kZhongUtf8 + kZhongUtf8).substr(0, 4));
    EXPECT_EQ(Converted(kSmile + kSmile, 7), (kSmileUtf8 + kSmileUtf8).substr(0, 6));
}

TEST_F(WideToAnsi, UnitFFAnd100_AreTheEdgeOfTheRule) {
    SetAnsiCodePage(kUtf8);
    EXPECT_EQ(Converted(L"\u00FF\u00FF", 3), "\xC3\xBF");
    EXPECT_EQ(Converted(L"\u0100\u0100", 3), "\xC4\x80");
    EXPECT_EQ(Converted(L"\u00FF\u00FF", 1), "\xC3");
    EXPECT_EQ(Converted(L"\u0100\u0100", 1), "");
}

TEST_F(WideToAnsi, SurrogatePair_IsFourBytesOfUtf8) {
    SetAnsiCodePage(kUtf8);
    EXPECT_EQ(Converted(kSmile, 4), kSmileUtf8 + Zeros(1));
}

TEST_F(WideToAnsi, LoneSurrogate_IsReplaced) {
    SetAnsiCodePage(kUtf8);
    EXPECT_EQ(Converted({wchar_t{0xDE00}, wchar_t{0xD83D}}, 6), "\xEF\xBF\xBD\xEF\xBF\xBD" + Zeros(1));
}

TEST_F(WideToAnsi, UnitTheCodePageLacks_IsAQuestionMarkAUnit) {
    EXPECT_EQ(Converted(kSmile, 2), "??" + Zeros(1));
    SetAnsiCodePage(kWestern);
    EXPECT_EQ(Converted(L"a" + kZhong, 2), "a?" + Zeros(1));
}

TEST_F(WideToAnsi, LongText_IsConvertedWhole) {
    EXPECT_EQ(Converted(std::wstring(20000, L'x'), 20000), std::string(20000, 'x') + Zeros(1));
    EXPECT_EQ(Converted(std::wstring(20000, L'x'), 19999), std::string(19999, 'x'));
}

// Any text, any room: converted when its bytes fit, else cut by the rule of one and two bytes.
TEST_F(WideToAnsi, AnyTextAnyRoom_IsAsDescribed) {
    using Encoded = std::map<wchar_t, std::string>;
    const std::map<unsigned, Encoded> codePages{
        {kChinese, {{L'A', "A"}, {kEAcute[0], kEAcute936}, {kEuro[0], kEuro936}, {kZhong[0], kZhong936}}},
        {kWestern, {{L'A', "A"}, {kEAcute[0], kEAcute1252}, {kEuro[0], kEuro1252}, {kZhong[0], "?"}}},
        {kUtf8, {{L'A', "A"}, {kEAcute[0], kEAcuteUtf8}, {kEuro[0], kEuroUtf8}, {kZhong[0], kZhongUtf8}}}};
    const std::wstring alphabet = L"A" + kEAcute + kEuro + kZhong;
    std::mt19937 random(Seed(201));
    for (int round = 0; round < 6000; ++round) {
        const auto& [codePage, encoded] = *std::next(codePages.begin(), round % 3);
        SetAnsiCodePage(codePage);
        std::wstring text;
        std::string whole;
        for (std::size_t i = random() % 9; i > 0; --i) {
            text += alphabet[random() % alphabet.size()];
            whole += encoded.at(text.back());
        }
        const std::size_t room = random() % 20;
        std::size_t cut = 0;
        for (const wchar_t unit : text) {
            const std::size_t width = unit <= 0xFF ? 1 : 2;
            if (cut + width > room) break;
            cut += width;
        }
        std::string expected = whole.substr(0, cut);
        if (whole.size() <= room) expected = whole + Zeros(std::max<std::size_t>(room - whole.size(), 1));
        ASSERT_EQ(Converted(text, static_cast<int>(room)), expected)
            << "seed 201, round " << round << ", code page " << codePage << ", room " << room;
    }
}
