// `qtrace map`: pages and pictures of saved tracks.
#include <gtest/gtest.h>

#include "host/text/json.h"
#include "tests/host/track_folder.h"

namespace host {
namespace {

class MapCommand : public TrackFolder {
 protected:
    ProcessResult Map(const std::vector<std::string>& arguments, const ProcessOptions& options = {}) const {
        return RunProcess(Command("map", arguments), options);
    }
    // Through the shell, which redirects or pipes the output.
    ProcessResult MapInShell(const std::string& arguments) const {
        return RunProcess(
            {"sh", "-c",
             std::string(QTRACE_PROGRAM) + " map --device '" + m_device.string() + "' " + arguments});
    }
    std::string Out(const char* name) const { return (m_folder.Path() / name).string(); }
};

// The data that the page's script reads.
Json DataIn(const std::string& page) {
    const std::string begin = "id=\"data\">";
    const std::size_t at = page.find(begin) + begin.size();
    return Json::parse(page.substr(at, page.find("</script>", at) - at));
}

std::vector<std::string> NamesIn(const std::string& page) {
    std::vector<std::string> names;
    const Json data = DataIn(page);
    for (const Json& track : data["tracks"]) names.push_back(track["name"]);
    return names;
}

std::size_t CountOf(const std::string& what, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += what.size()) ++count;
    return count;
}

TEST_F(MapCommand, NoName_DrawsAllTracksThatAreShown) {
    Store("walk", Way(47, 8, 20));
    Store("hidden", Way(48, 8, 20), false);
    ASSERT_EQ(Map({"-o", Out("map.html")}).exitCode, 0);
    EXPECT_EQ(NamesIn(ReadFile(Out("map.html"))), std::vector<std::string>{"walk"});
}

TEST_F(MapCommand, Names_DrawThoseEachOnceAlsoHiddenOnes) {
    Store("walk", Way(47, 8, 20));
    Store("hidden", Way(48, 8, 20), false);
    ASSERT_EQ(Map({"hidden", "HIDDEN.gpx", "-o", Out("map.html")}).exitCode, 0);
    EXPECT_EQ(NamesIn(ReadFile(Out("map.html"))), std::vector<std::string>{"hidden"});
}

TEST_F(MapCommand, Page_HoldsPointsAndFigures) {
    Store("walk", Way(47, 8, 20));
    ASSERT_EQ(Map({"-o", Out("map.html")}).exitCode, 0);
    const Json track = DataIn(ReadFile(Out("map.html")))["tracks"][0];
    EXPECT_EQ(track["points"]["lat"].size(), 20u);
    EXPECT_DOUBLE_EQ(track["points"]["lat"][3], 47.0003);
    EXPECT_DOUBLE_EQ(track["points"]["ele"][19], 419);
    EXPECT_EQ(track["points"]["time"][1], 1715500810);
    EXPECT_EQ(track["statistics"]["duration"], 190);
    EXPECT_EQ(track["color"], "#0000ff");
}

TEST_F(MapCommand, Page_NamesNoOtherMachine) {
    Store("walk", Way(47, 8, 20));
    ASSERT_EQ(Map({"-o", Out("map.html")}).exitCode, 0);
    const std::string page = ReadFile(Out("map.html"));
    EXPECT_NE(page.find("default-src &#39;none&#39;"), std::string::npos);
    EXPECT_EQ(page.find("connect-src"), std::string::npos);
    EXPECT_EQ(page.find("src=\"http"), std::string::npos);
    EXPECT_EQ(CountOf("<link", page), CountOf("<link rel=\"icon\" href=\"data:,\">", page));
    EXPECT_EQ(page.find("url(images"), std::string::npos);
    EXPECT_EQ(CountOf(" onclick=", page), 0u);
}

// The library already takes markup out of the names of its list; the title comes as the user gives it.
TEST_F(MapCommand, HostileNameAndTitle_AreText) {
    Store("hostile", Way(47, 8, 20), true, kHostile);
    ASSERT_EQ(Map({"-o", Out("map.html"), "--title", kHostile}).exitCode, 0);
    const std::string page = ReadFile(Out("map.html"));
    EXPECT_EQ(DataIn(page)["title"], kHostile);
    EXPECT_EQ(page.find("<img"), std::string::npos);
    EXPECT_EQ(CountOf("</script>", page), 2u);  // of the data and of the script
    ASSERT_EQ(Map({"-o", Out("map.svg"), "--title", kHostile}).exitCode, 0);
    const std::string picture = ReadFile(Out("map.svg"));
    EXPECT_EQ(picture.find("<img"), std::string::npos);
    EXPECT_EQ(CountOf("&lt;/script&gt;&lt;img onerror=alert(1)&gt;", picture), 2u);  // title and heading
}

TEST_F(MapCommand, Picture_IsWellFormedAndHasWhatAMapNeeds) {
    Store("walk", Way(47, 8, 20));
    ASSERT_EQ(Map({"-o", Out("map.SVG"), "--title", "A & B"}).exitCode, 0);
    const ProcessResult parsed = RunProcess(
        {"python3", "-c", "import sys,xml.dom.minidom as m;print(m.parse(sys.argv[1]).documentElement.tagName)",
         Out("map.SVG")});
    EXPECT_EQ(parsed.out, "svg\n") << parsed.err;
    const std::string picture = ReadFile(Out("map.SVG"));
    for (const char* part : {"<title>A &amp; B</title>", ">A</text>", ">B</text>", ">N</text>", " m</text>",
                             "Elevation m", "Speed km/h"})
        EXPECT_NE(picture.find(part), std::string::npos) << part;
    EXPECT_EQ(picture.find("<script"), std::string::npos);
}

TEST_F(MapCommand, Format_BeatsTheExtension) {
    Store("walk", Way(47, 8, 20));
    EXPECT_EQ(Map({"-o", Out("map.xyz")}).exitCode, 2);
    EXPECT_EQ(Map({"-o", Out("map.xyz"), "--format", "svg"}).exitCode, 0);
    EXPECT_TRUE(ReadFile(Out("map.xyz")).starts_with("<svg"));
    EXPECT_EQ(Map({"-o", Out("map.html"), "--format", "pdf"}).exitCode, 2);
    EXPECT_TRUE(Map({"-o", "-"}).out.starts_with("<!DOCTYPE html>"));
    EXPECT_EQ(Map({}).exitCode, 2);
}

TEST_F(MapCommand, UnknownName_FailsAndLeavesTheFile) {
    Store("walk", Way(47, 8, 20));
    WriteFile(Out("map.html"), "before");
    const ProcessResult run = Map({"walk", "nowhere", "-o", Out("map.html")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "qtrace map: no track named nowhere\n");
    EXPECT_EQ(ReadFile(Out("map.html")), "before");
}

TEST_F(MapCommand, NothingToDraw_SaysSo) {
    EXPECT_EQ(Map({"-o", "-"}).err, "qtrace map: the library holds no track\n");
    Store("hidden", Way(48, 8, 20), false);
    const ProcessResult run = Map({"-o", "-"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "qtrace map: no track is shown; name the tracks to draw\n");
}

TEST_F(MapCommand, NoRoom_KeepsTheFileThatWasThere) {
    Store("walk", Way(47, 8, 20));
    WriteFile(Out("map.html"), "before");
    ProcessOptions small;
    small.fileSizeLimit = 20'000;
    const ProcessResult run = Map({"-o", Out("map.html")}, small);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot be written"), std::string::npos) << run.err;
    EXPECT_EQ(ReadFile(Out("map.html")), "before");
}

TEST_F(MapCommand, FullDeviceOrClosedPipe_FailsAndDoesNotHang) {
    Store("walk", Way(47, 8, 20));
    EXPECT_EQ(Map({"-o", "/dev/full", "--format", "html"}).exitCode, 1);
    EXPECT_EQ(MapInShell("-o - > /dev/full").exitCode, 1);
    EXPECT_EQ(MapInShell("-o - | head -c 10").out, "<!DOCTYPE ");
}

TEST_F(MapCommand, ReadOnlyDevice_IsEnough) {
    Store("walk", Way(47, 8, 20));
    const auto readOnly = std::filesystem::perms::owner_write | std::filesystem::perms::group_write |
                          std::filesystem::perms::others_write;
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms::all);
    for (const auto& folder : {m_device, m_device / "UserData", m_device / "UserData" / "Track"})
        std::filesystem::permissions(folder, readOnly, std::filesystem::perm_options::remove);
    ProcessOptions nobody;
    nobody.asNobody = true;
    EXPECT_EQ(Map({"-o", Out("map.html")}, nobody).exitCode, 0);
    const ProcessResult run = Map({"-o", (m_device / "map.html").string()}, nobody);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("map.html cannot be written"), std::string::npos) << run.err;
}

TEST_F(MapCommand, Tiles_AreTheOnlyForeignThingThatThePolicyLetsIn) {
    Store("walk", Way(47, 8, 20));
    ASSERT_EQ(Map({"-o", Out("map.html"), "--tiles", "https://{s}.tiles.example:8080/{z}/{x}/{y}.png",
                   "--attribution", "<b>Maps</b>"})
                  .exitCode,
              0);
    const std::string page = ReadFile(Out("map.html"));
    EXPECT_NE(page.find("img-src data: https://*.tiles.example:8080;"), std::string::npos);
    EXPECT_EQ(page.find("<b>"), std::string::npos);
    for (const char* url : {"javascript:{z}{x}{y}", "https://tiles.example/{z}/{x}.png", "https:///{z}/{x}/{y}",
                            "https://a;script-src *{z}/{x}/{y}", "/{z}/{x}/{y}"})
        EXPECT_EQ(Map({"-o", "-", "--tiles", url}).exitCode, 2) << url;
}

}  // namespace
}  // namespace host
