// Names as the library takes them: host/tracks/track_name.h.
#include <gtest/gtest.h>

#include "host/tracks/track_name.h"
#include "qtrace.h"

namespace host {
namespace {

struct Utf8Page : ::testing::Test {
    Utf8Page() { SetAnsiCodePage(65001); }
};
using TrackNames = Utf8Page;

TEST_F(TrackNames, ShortName_StaysAsItIs) {
    const TrackName name = MakeTrackName("Rund um den See");
    EXPECT_EQ(name.text, "Rund um den See");
    EXPECT_FALSE(name.wasChanged);
}

TEST_F(TrackNames, LongName_IsCutAtACharactersEnd) {
    const TrackName name = MakeTrackName(std::string(31, 'x') + "\u00fc");  // 33 bytes
    EXPECT_EQ(name.text, std::string(31, 'x'));
    EXPECT_TRUE(name.wasChanged);
}

TEST_F(TrackNames, NameOfExactly32Bytes_Stays) {
    const std::string text = std::string(30, 'x') + "\u00fc";
    EXPECT_EQ(MakeTrackName(text).text, text);
}

TEST_F(TrackNames, PathInAName_LeadsNowhere) {
    EXPECT_EQ(MakeTrackName("../../etc/x").text, ".._.._etc_x");
    EXPECT_EQ(MakeTrackName("a\\b:c\n").text, "a_b_c_");
}

TEST_F(TrackNames, ControlCharacters_BecomeUnderscores) {
    EXPECT_EQ(MakeTrackName("a\033b\u009bc\u202ed\u2066e").text, "a_b_c_d_e");
    EXPECT_TRUE(MakeTrackName("a\u009bc").wasChanged);
}

TEST_F(TrackNames, BlanksAroundAName_Go) {
    EXPECT_EQ(MakeTrackName("  home  ").text, "home");
    EXPECT_EQ(MakeTrackName("   ").text, "");
}

TEST_F(TrackNames, BlankWhereANameIsCut_Goes) {
    EXPECT_EQ(MakeTrackName(std::string(31, 'x') + " yz").text, std::string(31, 'x'));
}

TEST(TrackNamesInACodePage, TwoByteCharacters_CountTwoAndAreNotSplit) {
    ASSERT_TRUE(SetAnsiCodePage(936));
    std::string text = "x";
    for (int i = 0; i < 16; ++i) text += "\u6e56";  // 1 + 32 bytes in that page
    EXPECT_EQ(MakeTrackName(text).text.size(), 31u);
}

}  // namespace
}  // namespace host
