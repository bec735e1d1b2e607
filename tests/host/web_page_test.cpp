// The page's markup: what stands in it cannot become part of it.
#include <gtest/gtest.h>

#include "host/page/map_svg.h"
#include "host/page/web_files.h"
#include "host/page/web_page.h"
#include "host/text/markup.h"

namespace host {
namespace {

constexpr const char* kHostile = "</script><!--<script>&\"'\u2028\u2029";

TEST(WebPage, Data_HoldsNoCharacterThatAPageReads) {
    const Json tracks = Json::array({{{"name", kHostile}}});
    const std::string page = WebPage({"t", false, std::nullopt}, tracks);
    const std::size_t at = page.find("id=\"data\">") + 10;
    const std::string data = page.substr(at, page.find("</script>", at) - at);
    for (const char* character : {"<", ">", "&", "\u2028", "\u2029"})
        EXPECT_EQ(data.find(character), std::string::npos) << character;
    EXPECT_EQ(Json::parse(data)["tracks"][0]["name"], kHostile);
}

TEST(WebPage, TextThatLooksLikeAPlaceholder_StaysText) {
    const std::string page = WebPage({"@SCRIPT@ @DATA@", false, std::nullopt}, Json::array());
    EXPECT_NE(page.find("<title>@SCRIPT@ @DATA@</title>"), std::string::npos);
    EXPECT_EQ(page.find(kWebScript, page.find(kWebScript) + 1), std::string::npos);
}

TEST(WebPage, BytesThatAreNoText_DoNotBreakIt) {
    const std::string page = WebPage({"a\xff\x01z", false, std::nullopt}, Json::array({{{"name", "\xc3("}}}));
    EXPECT_NE(page.find("<title>a\ufffd\ufffdz</title>"), std::string::npos);
}

TEST(MarkupText, Characters_ThatMarkupReads_AreSpelledOut) {
    EXPECT_EQ(MarkupText("<a b='c' d=\"e\">&"), "&lt;a b=&#39;c&#39; d=&quot;e&quot;&gt;&amp;");
    EXPECT_EQ(MarkupText("s\u00fcd \U0001f6b2\n"), "s\u00fcd \U0001f6b2\n");
}

// Cut characters, overlong forms, surrogates, what XML forbids.
TEST(MarkupText, BytesThatAreNoCharacter_AreReplaced) {
    EXPECT_EQ(MarkupText("\xe2\x82"), "\ufffd\ufffd");
    EXPECT_EQ(MarkupText("\xc0\xbc"), "\ufffd\ufffd");
    EXPECT_EQ(MarkupText("\xe0\x80\xbc"), "\ufffd\ufffd\ufffd");
    EXPECT_EQ(MarkupText("\xed\xa0\x80"), "\ufffd\ufffd\ufffd");
    EXPECT_EQ(MarkupText("\xef\xbf\xbf\x1b"), "\ufffd\ufffd\ufffd\ufffd");
    EXPECT_EQ(MarkupText("\xf4\x90\x80\x80"), "\ufffd\ufffd\ufffd\ufffd");
}

TEST(MapSvg, NameInTheLegend_IsText) {
    DrawnTrack track;
    track.name = "</text><script>";
    track.color = "#0000ff";
    track.drawn = PointsToDraw({{47, 8, 0, 0, 0, 0, {}}, {47.1, 8, 0, 0, 0, 0, {}}});
    const std::string picture = MapSvg("t", {track, track});
    EXPECT_EQ(picture.find("<script"), std::string::npos);
    EXPECT_NE(picture.find("&lt;/text&gt;&lt;script&gt;"), std::string::npos);
}

}  // namespace
}  // namespace host
