// Between the ANSI code page and UTF-8: AnsicToUTF_8 and UTF_8ToAnsic.
#include <gtest/gtest.h>

#include "tests/util/text_fixture.h"
#include "util/text.h"

namespace {

const std::string kZero(1, '\0');

}  // namespace

class AnsiToUtf8 : public TextTest {};

TEST_F(AnsiToUtf8, EmptyText_IsASingleZeroByte) {
    Watched<char> dst(10);
    EXPECT_EQ(AnsicToUTF_8("", dst.Get(), 10), 1);
    EXPECT_EQ(dst.First(1), kZero);
    EXPECT_TRUE(dst.UntouchedFrom(1));
}

TEST_F(AnsiToUtf8, Text_IsWrittenWithTerminatorAndNothingMore) {
    Watched<char> dst(20);
    EXPECT_EQ(AnsicToUTF_8("abc", dst.Get(), 20), 4);
    EXPECT_EQ(dst.First(4), "abc" + kZero);
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(AnsiToUtf8, Result_CountsWideCharactersNotBytes) {
    Watched<char> dst(20);
    EXPECT_EQ(AnsicToUTF_8((kZhong936 + kEuro936).c_str(), dst.Get(), 20), 3);
    EXPECT_EQ(dst.First(7), kZhongUtf8 + kEuroUtf8 + kZero);
    EXPECT_TRUE(dst.UntouchedFrom(7));
}

TEST_F(AnsiToUtf8, WesternCodePage_IsConverted) {
    SetAnsiCodePage(kWestern);
    Watched<char> dst(20);
    EXPECT_EQ(AnsicToUTF_8((kEAcute1252 + kEuro1252).c_str(), dst.Get(), 20), 3);
    EXPECT_EQ(dst.First(6), kEAcuteUtf8 + kEuroUtf8 + kZero);
}

TEST_F(AnsiToUtf8, SurrogatePair_CountsTwoAndStaysFourBytes) {
    SetAnsiCodePage(kUtf8);
    Watched<char> dst(20);
    EXPECT_EQ(AnsicToUTF_8(kSmileUtf8.c_str(), dst.Get(), 20), 3);
    EXPECT_EQ(dst.First(5), kSmileUtf8 + kZero);
    EXPECT_TRUE(dst.UntouchedFrom(5));
}

TEST_F(AnsiToUtf8, ExactRoom_TakesTextAndTerminator) {
    Watched<char> dst(4);
    EXPECT_EQ(AnsicToUTF_8(kZhong936.c_str(), dst.Get(), 4), 2);
    EXPECT_EQ(dst.First(4), kZhongUtf8 + kZero);
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(AnsiToUtf8, RoomTooSmall_IsSilentAndWritesNothingBehind) {
    for (int room = 1; room < 7; ++room) {
        Watched<char> dst(static_cast<std::size_t>(room));
        EXPECT_EQ(AnsicToUTF_8((kZhong936 + kZhong936).c_str(), dst.Get(), room), 3);
        EXPECT_TRUE(dst.UntouchedFrom(static_cast<std::size_t>(room))) << room;
    }
}

TEST_F(AnsiToUtf8, NoRoom_IsAQuestionAndWritesNothing) {
    for (const int room : {0, -1}) {
        Watched<char> dst(4);
        EXPECT_EQ(AnsicToUTF_8("abc", dst.Get(), room), 4);
        EXPECT_TRUE(dst.Untouched()) << room;
    }
}

TEST_F(AnsiToUtf8, BrokenCharacter_IsReplacedNotRefused) {
    char inside[10] = {}, last[10] = {};
    EXPECT_EQ(AnsicToUTF_8("a\xC4\x31z", inside, 10), 4);
    EXPECT_STREQ(inside, "a?z");
    EXPECT_GE(AnsicToUTF_8("a\xD6", last, 10), 1);
    EXPECT_STREQ(last, "a?");
}

TEST_F(AnsiToUtf8, LongText_IsConvertedWhole) {
    std::string chinese, utf8;
    for (int i = 0; i < 5000; ++i) {
        chinese += kZhong936;
        utf8 += kZhongUtf8;
    }
    Watched<char> dst(utf8.size() + 1);
    EXPECT_EQ(AnsicToUTF_8(chinese.c_str(), dst.Get(), static_cast<int>(utf8.size()) + 1), 5001);
    EXPECT_EQ(dst.First(utf8.size() + 1), utf8 + kZero);
    EXPECT_TRUE(dst.UntouchedFrom(utf8.size() + 1));
}

class Utf8ToAnsi : public TextTest {};

TEST_F(Utf8ToAnsi, EmptyText_IsASingleZeroByteInAClearedDestination) {
    Watched<char> dst(4);
    EXPECT_EQ(UTF_8ToAnsic("", dst.Get(), 4), 1);
    EXPECT_EQ(dst.First(4), std::string(4, '\0'));
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(Utf8ToAnsi, EmptyTextWithoutRoom_IsASingleZeroByte) {
    Watched<char> dst(1);
    EXPECT_EQ(UTF_8ToAnsic("", dst.Get(), 0), 1);
    EXPECT_EQ(dst.First(1), kZero);
    EXPECT_TRUE(dst.UntouchedFrom(1));
}

TEST_F(Utf8ToAnsi, Text_ClearsTheDestinationAndIsWritten) {
    Watched<char> dst(10);
    EXPECT_EQ(UTF_8ToAnsic(("a" + kZhongUtf8).c_str(), dst.Get(), 10), 3);
    EXPECT_EQ(dst.First(10), "a" + kZhong936 + std::string(7, '\0'));
    EXPECT_TRUE(dst.UntouchedFrom(10));
}

TEST_F(Utf8ToAnsi, TextThatFillsTheDestination_IsTerminatedOnePastIt) {
    Watched<char> dst(3);
    EXPECT_EQ(UTF_8ToAnsic(("a" + kZhongUtf8).c_str(), dst.Get(), 3), 3);
    EXPECT_EQ(dst.First(4), "a" + kZhong936 + kZero);
    EXPECT_TRUE(dst.UntouchedFrom(4));
}

TEST_F(Utf8ToAnsi, TextTooLong_IsCutBeforeTheCharacterThatDoesNotFit) {
    Watched<char> dst(4);
    EXPECT_EQ(UTF_8ToAnsic(("a" + kZhongUtf8 + kZhongUtf8).c_str(), dst.Get(), 4), 4);
    EXPECT_EQ(dst.First(3), "a" + kZhong936);
    EXPECT_TRUE(dst.UntouchedFrom(3));
}

TEST_F(Utf8ToAnsi, ByteOrderMark_IsNotStripped) {
    SetAnsiCodePage(kUtf8);
    Watched<char> dst(10);
    EXPECT_EQ(UTF_8ToAnsic("\xEF\xBB\xBFx", dst.Get(), 10), 3);
    EXPECT_EQ(dst.First(5), "\xEF\xBB\xBFx" + kZero);
}

TEST_F(Utf8ToAnsi, CharacterTheCodePageLacks_IsAQuestionMarkAUnit) {
    SetAnsiCodePage(kWestern);
    Watched<char> dst(10);
    EXPECT_EQ(UTF_8ToAnsic((kZhongUtf8 + kSmileUtf8 + "x").c_str(), dst.Get(), 10), 5);
    EXPECT_EQ(dst.First(5), "???x" + kZero);
}

TEST_F(Utf8ToAnsi, BrokenUtf8_IsReplacedNotRefused) {
    SetAnsiCodePage(kUtf8);
    Watched<char> dst(10);
    EXPECT_EQ(UTF_8ToAnsic("a\x80"
                           "b",
                           dst.Get(), 10),
              4);
    EXPECT_EQ(dst.First(6),
              "a\xEF\xBF\xBD"
              "b" +
                  kZero);
}

TEST_F(Utf8ToAnsi, ThereAndBack_IsTheSameTextInEveryCodePage) {
    const struct {
        unsigned codePage;
        std::string text;
    } cases[] = {{kChinese, "Weg " + kZhong936 + kEuro936 + "\x81\x5C"},
                 {kWestern, "Weg " + kEAcute1252 + kEuro1252 + "\xFF"},
                 {kUtf8, "Weg " + kZhongUtf8 + kSmileUtf8}};
    for (const auto& one : cases) {
        SetAnsiCodePage(one.codePage);
        char utf8[64] = {}, back[64] = {};
        AnsicToUTF_8(one.text.c_str(), utf8, 64);
        UTF_8ToAnsic(utf8, back, 63);
        EXPECT_EQ(one.text, back) << one.codePage;
    }
}
