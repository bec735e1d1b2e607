#include "host/source/nmea_sentence.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace host {
namespace {

class Cutter : public ::testing::Test {
 protected:
    void Read(std::string_view bytes) {
        m_cutter.Push(bytes);
        m_cutter.Finish();
    }
    std::vector<std::string> Good() const {
        std::vector<std::string> bodies;
        for (const auto& [body, framing] : m_taken)
            if (framing == Framing::Good) bodies.push_back(body);
        return bodies;
    }
    std::vector<Framing> Framings() const {
        std::vector<Framing> framings;
        for (const auto& taken : m_taken) framings.push_back(taken.second);
        return framings;
    }

    std::vector<std::pair<std::string, Framing>> m_taken;
    SentenceCutter m_cutter{
        [this](const Sentence& s) { m_taken.emplace_back(std::string(s.body), s.framing); }};
};

using Bodies = std::vector<std::string>;
using Flaws = std::vector<Framing>;

// Checksums worked out by hand: A ^ B = 03, and GPZDA from a receiver.
TEST_F(Cutter, SentenceWithItsChecksum_IsGood) {
    Read("$AB*03\r\n$GPZDA,005947.00,08,07,2010,+00,00*4E\n");
    EXPECT_EQ(Good(), (Bodies{"AB", "GPZDA,005947.00,08,07,2010,+00,00"}));
}

TEST_F(Cutter, ChecksumInSmallLetters_IsGood) {
    Read("$GPZDA,005947.00,08,07,2010,+00,00*4e\n");
    EXPECT_EQ(Good().size(), 1u);
}

TEST_F(Cutter, OneWrongCharacter_IsABadChecksum) {
    Read("$AC*03\n");
    EXPECT_EQ(Framings(), Flaws{Framing::BadChecksum});
}

TEST_F(Cutter, NoHexadecimalDigits_IsABadChecksum) {
    Read("$AB*0x\n$AB*+3\n");
    EXPECT_EQ(Framings(), (Flaws{Framing::BadChecksum, Framing::BadChecksum}));
}

TEST_F(Cutter, TextBehindTheChecksum_IsABadChecksum) {
    Read("$AB*03x\n");
    EXPECT_EQ(Framings(), Flaws{Framing::BadChecksum});
}

TEST_F(Cutter, LineWithoutChecksum_IsNamedSo) {
    Read("$AB\n");
    EXPECT_EQ(Framings(), Flaws{Framing::NoChecksum});
}

TEST_F(Cutter, ChecksumOfOneDigit_IsCutOff) {
    Read("$AB*0\n");
    EXPECT_EQ(Framings(), Flaws{Framing::CutOff});
}

TEST_F(Cutter, NextSentenceInTheSameLine_CutsTheFirstOff) {
    Read("$GPGGA,1234$AB*03\n");
    EXPECT_EQ(Framings(), (Flaws{Framing::CutOff, Framing::Good}));
}

TEST_F(Cutter, EndOfInputInASentence_CutsItOff) {
    Read("$AB*03\n$GPRMC,12");
    EXPECT_EQ(Framings(), (Flaws{Framing::Good, Framing::CutOff}));
}

TEST_F(Cutter, LastLineWithoutLineEnd_IsTaken) {
    Read("$AB*03");
    EXPECT_EQ(Good(), Bodies{"AB"});
}

TEST_F(Cutter, EveryKindOfLineEnd_EndsALine) {
    Read("$AB*03\n$AB*03\r\n$AB*03\r$AB*03");
    EXPECT_EQ(Good().size(), 4u);
}

TEST_F(Cutter, BlanksBehindASentence_DoNotMatter) {
    Read("$AB*03 \t\r\n");
    EXPECT_EQ(Good(), Bodies{"AB"});
}

TEST_F(Cutter, ZeroFilledTail_LeavesTheSentenceBeforeItGood) {
    Read("$AB*03" + std::string(5000, '\0') + "$AB*03\n");
    EXPECT_EQ(Good().size(), 2u);
    EXPECT_EQ(m_cutter.OtherLines(), 0u);
}

TEST_F(Cutter, OtherLines_AreCountedAndBlankOnesAreNot) {
    Read("# a comment\n\n \r\n!AIVDM,1,1,,A,4020tbAumg8s0,0*03\n$AB*03\n");
    EXPECT_EQ(m_cutter.OtherLines(), 2u);
    EXPECT_EQ(m_taken.size(), 1u);
}

TEST_F(Cutter, GoodSentenceBehindOtherText_IsTaken) {
    Read("2013-06-30 08:58:59 $AB*03\n\xb5\x62\x01$AB*03\n");
    EXPECT_EQ(Good().size(), 2u);
    EXPECT_EQ(m_cutter.OtherLines(), 0u);
}

TEST_F(Cutter, DollarSignInAComment_IsNoSentence) {
    Read("# Note: the quirk of $PQGSV\n");
    EXPECT_TRUE(m_taken.empty());
    EXPECT_EQ(m_cutter.OtherLines(), 1u);
}

TEST_F(Cutter, LongestSentence_IsTakenAndOneMoreIsTooLong) {
    const std::string longest =
        "$" + std::string(SentenceCutter::kLongest - 4, 'A');  // an even number of A: 00
    ASSERT_EQ(longest.size() % 2, 1u);
    Read(longest + "*00\n" + longest + "AA*00\n$AB*03\n");
    EXPECT_EQ(Framings(), (Flaws{Framing::Good, Framing::TooLong, Framing::Good}));
}

TEST_F(Cutter, MegabytesWithoutALineEnd_AreOneOtherLine) {
    Read(std::string(3'000'000, 'x') + "\n$AB*03\n");
    EXPECT_EQ(m_cutter.OtherLines(), 1u);
    EXPECT_EQ(Good(), Bodies{"AB"});
}

TEST_F(Cutter, ByteByByte_GivesTheSameAsAtOnce) {
    const std::string bytes = "noise\n$AB*03\r\n$AC*03\n$GPGGA,12$AB*03\n\n$AB";
    for (const char c : bytes) m_cutter.Push({&c, 1});
    m_cutter.Finish();
    EXPECT_EQ(Framings(),
              (Flaws{Framing::Good, Framing::BadChecksum, Framing::CutOff, Framing::Good, Framing::CutOff}));
    EXPECT_EQ(m_cutter.OtherLines(), 1u);
}

TEST_F(Cutter, CompleteLine_IsHandedOverBeforeMoreArrives) {
    m_cutter.Push("$AB*03\n$A");
    EXPECT_EQ(Good(), Bodies{"AB"});
}

}  // namespace
}  // namespace host
