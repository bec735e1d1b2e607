// Text on its way into a manual page.
#include <gtest/gtest.h>

#include "host/text/roff.h"

namespace host {
namespace {

TEST(Roff, SignsOfTheTypesetter_AreEscaped) {
    EXPECT_EQ(Roff("--mode a|b"), "\\-\\-mode a|b");
    EXPECT_EQ(Roff("\\Track"), "\\eTrack");
    EXPECT_EQ(Roff("~/x 'y' `z` ^"), "\\(ti/x \\(aqy\\(aq \\(gaz\\(ga \\(ha");
}

TEST(Roff, DotAtTheBeginning_MakesNoRequest) {
    EXPECT_EQ(Roff(".gpx"), "\\&.gpx");
    EXPECT_EQ(Roff("a.gpx"), "a.gpx");
}

TEST(Roff, CharactersBeyondAscii_AreNamedByTheirNumber) {
    EXPECT_EQ(Roff("5\u00b0"), "5\\[u00B0]");
    EXPECT_EQ(Roff("\u2264x"), "\\[u2264]x");
    EXPECT_EQ(Roff("\U0001f6b2."), "\\[u1F6B2].");
}

TEST(RoffParagraphs, Lines_AreFilled) { EXPECT_EQ(RoffParagraphs("One.\nTwo."), "One.\nTwo.\n"); }

TEST(RoffParagraphs, BlankLine_PartsParagraphs) {
    EXPECT_EQ(RoffParagraphs("One.\n\n\nTwo."), "One.\n.PP\nTwo.\n");
}

TEST(RoffParagraphs, BlankLinesAtTheEnds_Vanish) { EXPECT_EQ(RoffParagraphs("\nOne.\n\n"), "One.\n"); }

TEST(RoffParagraphs, IndentedLines_StandAsTheyAre) {
    EXPECT_EQ(RoffParagraphs("Like this:\n  a\n  b\nand so on"), "Like this:\n.nf\n  a\n  b\n.fi\nand so on\n");
    EXPECT_EQ(RoffParagraphs("  a"), ".nf\n  a\n.fi\n");
}

TEST(RoffParagraphs, Nothing_IsNothing) { EXPECT_EQ(RoffParagraphs(""), ""); }

}  // namespace
}  // namespace host
