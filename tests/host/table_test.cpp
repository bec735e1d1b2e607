// Tables and how wide texts stand.
#include "host/text/table.h"

#include <sstream>

#include <gtest/gtest.h>

#include "host/text/display_width.h"
#include "host/tracks/statistics_text.h"

namespace host {
namespace {

TEST(DisplayWidth, Characters_TakeTheirColumns) {
    EXPECT_EQ(DisplayWidth("abc"), 3u);
    EXPECT_EQ(DisplayWidth("Zürich"), 6u);
    EXPECT_EQ(DisplayWidth("湖"), 2u);
    EXPECT_EQ(DisplayWidth("한강"), 4u);
    EXPECT_EQ(DisplayWidth("u\xCC\x88"), 1u);         // u and the combining dots
    EXPECT_EQ(DisplayWidth("\xF0\x9F\x9A\xB2"), 2u);  // a bicycle
    EXPECT_EQ(DisplayWidth("\xFF\xE6\x80"), 3u);      // no UTF-8
    EXPECT_EQ(DisplayWidth(""), 0u);
}

TEST(DisplayWidth, Fitting_CutsAtACharacter) {
    EXPECT_EQ(FitWidth("abc", 3), "abc");
    EXPECT_EQ(FitWidth("abcd", 3), "ab…");
    EXPECT_EQ(FitWidth("湖畔散歩", 4), "湖…");
    EXPECT_EQ(FitWidth("abc", 0), "");
}

TEST(DisplayWidth, ControlCharacters_DoNotReachTheTerminal) {
    EXPECT_EQ(Printable("a\033[31mb\n"), "a?[31mb?");
    EXPECT_EQ(Printable("Zürich 轨迹 😀"), "Zürich 轨迹 😀");
}

// A terminal takes U+009B for the beginning of a sequence, as a character and, in other encodings, as a byte.
TEST(Printable, ControlsOfTheUpperHalf_AreReplaced) {
    EXPECT_EQ(Printable("a\u009b31mb\u0080\u009f\u00a0"), "a?31mb??\u00a0");
    EXPECT_EQ(Printable("a\x9b"
                        "b"),
              "a?b");
}

// They turn round what stands beside them: "gpx.exe" can be made to look like "exe.gpx".
TEST(Printable, ControlsOfTheWritingDirection_AreReplaced) {
    for (const char* control : {"\u061c", "\u200e", "\u200f", "\u202a", "\u202e", "\u2066", "\u2069"})
        EXPECT_EQ(Printable(std::string("a") + control + "b"), "a?b") << control;
    EXPECT_EQ(Printable("\u200d\u2029\u206a"), "\u200d\u2029\u206a");
}

TEST(Table, Cells_DoNotSteerTheTerminal) {
    Table table({{"A"}});
    table.AddRow({"x\033[2Jy"});
    std::ostringstream out;
    table.Print(out, 0);
    EXPECT_EQ(out.str(), "A\nx?[2Jy\n");
}

TEST(Table, NarrowTerminal_CutsTheFirstColumn) {
    Table table({{"NAME"}, {"N", Column::Align::Right}});
    table.AddRow({"a very long name of a track", "12"});
    std::ostringstream wide, narrow;
    table.Print(wide, 0);
    EXPECT_EQ(wide.str(), "NAME                          N\na very long name of a track  12\n");
    table.Print(narrow, 20);
    EXPECT_EQ(narrow.str(), "NAME               N\na very long nam…  12\n");
}

TEST(Table, Decoration_TakesItsColumns) {
    Table table({{"A"}, {"B"}, {"C"}});
    table.AddRow({"1", "x", "y"});
    table.Decorate(1, "\033[1m##\033[0m", 2);
    std::ostringstream out;
    table.Print(out, 0);
    EXPECT_EQ(out.str(), "A  B    C\n1  \033[1m##\033[0mx  y\n");
}

TEST(StatisticsText, Durations_AreHoursMinutesSeconds) {
    EXPECT_EQ(DurationText(0), "0:00:00");
    EXPECT_EQ(DurationText(5325), "1:28:45");
    EXPECT_EQ(DurationText(100 * 3600), "100:00:00");
    EXPECT_EQ(SpeedText(10), "36.0 km/h");
    EXPECT_EQ(AreaText(840), "840 m²");
    EXPECT_EQ(AreaText(1250000), "1.25 km²");
}

}  // namespace
}  // namespace host
