// `qtrace list`, `qtrace info` and `qtrace points`: looking at the library changes nothing in it.
#include <gtest/gtest.h>

#include "tests/host/library_program.h"

namespace fs = std::filesystem;

namespace host {
namespace {

using ListCommand = LibraryProgram;
using InfoCommand = LibraryProgram;
using PointsCommand = LibraryProgram;

TEST_F(ListCommand, Tracks_AreATableWithATitle) {
    AddTrack("Lake", {{0, 0}, {840, 600}}, 0x0080ff);
    const ProcessResult run = Run({"list"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "NAME  POINTS  LENGTH  START                    DURATION  COLOR    SHOWN\n"
              "Lake       2   840 m  2024-05-12 08:00:00 UTC   0:10:00  #ff8000  yes\n");
}

TEST_F(ListCommand, WideNames_KeepTheColumnsStraight) {
    AddTrack("湖畔散歩");
    AddTrack("Über");
    const ProcessResult run = Run({"list", "--sort", "name"});
    EXPECT_TRUE(Contains(run.out, "\nÜber           3   300 m")) << run.out;
    EXPECT_TRUE(Contains(run.out, "\n湖畔散歩       3   300 m")) << run.out;
}

TEST_F(ListCommand, Sort_IsByNameDateOrLength) {
    AddTrack("b", {{0, 100}, {10, 200}});
    AddTrack("A", {{0, 300}, {500, 400}});
    AddTrack("c", {{0, 200}, {90, 300}});
    const auto order = [this](const std::string& key) {
        std::string names;
        for (const auto& track : Json({"list", "--sort", key})) names += track["name"].get<std::string>();
        return names;
    };
    EXPECT_EQ(order("name"), "Abc");
    EXPECT_EQ(order("date"), "Acb");
    EXPECT_EQ(order("length"), "Acb");
    EXPECT_EQ(Run({"list", "--sort", "color"}).exitCode, 2);
}

TEST_F(ListCommand, Json_HasTheHeader) {
    AddTrack("Lake", {{0, 0}, {840, 600}}, 0x0080ff, false);
    const auto json = Json({"list"});
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json[0]["name"], "Lake");
    EXPECT_EQ(json[0]["file"], "Lake.gpx");
    EXPECT_EQ(json[0]["points"], 2);
    EXPECT_EQ(json[0]["length"], 840.0);
    EXPECT_EQ(json[0]["start"], "2024-05-12T08:00:00Z");
    EXPECT_EQ(json[0]["duration"], 600);
    EXPECT_EQ(json[0]["color"], "#ff8000");
    EXPECT_EQ(json[0]["shown"], false);
}

TEST_F(ListCommand, NoTracks_IsSaidAndAnEmptyListInJson) {
    const ProcessResult run = Run({"list"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(Contains(run.err, "no tracks in " + Tracks().string())) << run.err;
    EXPECT_EQ(Json({"list"}), nlohmann::json::array());
}

TEST_F(ListCommand, UnreadableFiles_AreNamedWithTheReason) {
    AddTrack("good");
    WriteFile(File("empty"), "");
    WriteFile(Tracks() / "cut.GPX", Gpx("cut", {{0, 0}}).substr(0, 200));
    WriteFile(Tracks() / "notes.txt", "no track");
    const ProcessResult run = Run({"list"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Contains(run.err, "empty.gpx is not listed: it is empty")) << run.err;
    EXPECT_TRUE(Contains(run.err, "cut.GPX is not listed: it holds no track")) << run.err;
    EXPECT_FALSE(Contains(run.err, "notes")) << run.err;
    EXPECT_TRUE(Contains(run.out, "good"));
}

TEST_F(ListCommand, StrangersFile_IsCountedByItsPoints) {
    WriteFile(File("theirs"), "<gpx><trk><name>Theirs</name><number>1</number><trkseg>" + Point({0, 0}) +
                                  Point({50, 10}) + Point({100, 20}) + "</trkseg></trk></gpx>");
    const auto json = Json({"list"});
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json[0]["points"], 3);
    EXPECT_NEAR(json[0]["length"].get<double>(), 100, 0.2);
    EXPECT_EQ(json[0]["duration"], 20);
}

TEST_F(ListCommand, BrokenPipeAndFullOutput_AreNoCrash) {
    for (int i = 0; i < 20; ++i) AddTrack("track " + std::to_string(i));
    EXPECT_EQ(RunInShell("\"$@\" | true", {"list"}).exitCode, 0);
    const ProcessResult full = RunInShell("\"$@\" >/dev/full", {"list"});
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_TRUE(Contains(full.err, "standard output")) << full.err;
}

TEST_F(ListCommand, ReadOnlyFolder_IsListed) {
    AddTrack("Lake");
    const ProcessResult run = Run({"list"}, AsNobodyInAReadOnlyFolder());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(Contains(run.out, "Lake"));
}

TEST_F(ListCommand, Terminal_ShowsColors) {
    if (!fs::exists("/usr/bin/script")) GTEST_SKIP() << "no script(1) here";
    AddTrack("Lake", {{0, 0}, {840, 600}}, 0x0080ff);
    const std::string command = std::string("exec script -qec \"'") + QTRACE_PROGRAM + "' list\" /dev/null";
    EXPECT_TRUE(Contains(RunInShell(command, {}).out, "\033[38;2;255;128;0m"));
    EXPECT_FALSE(Contains(Run({"list"}).out, "\033"));
}

TEST_F(InfoCommand, Track_IsTheStatisticsOfItsPoints) {
    AddTrack("Lake", {{0, 0}, {100, 50}, {103, 200}, {203, 250, 500}});
    const ProcessResult run = Run({"info", "lake.gpx"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    for (const char* line :
         {"points            4\n", "length            203 m\n", "duration          0:04:10\n",
          "moving            0:01:40\n", "stopped           0:02:30", "ascent            100 m",
          "computed from     4 points; speeds from positions and times\n"})
        EXPECT_TRUE(Contains(run.out, line)) << line << run.out;
    const auto json = Json({"info", "Lake"});
    EXPECT_EQ(json["stopped_time"], 150);
    EXPECT_EQ(json["ascent"], 100.0);
    EXPECT_EQ(json["bounds"]["west"], 8.0);
}

TEST_F(InfoCommand, Library_IsTheSumOfItsTracks) {
    AddTrack("a", {{0, 100}, {100, 200}});
    AddTrack("b", {{0, 500}, {400, 1000}}, 0, false);
    WriteFile(File("broken"), "x");
    const auto json = Json({"info"});
    EXPECT_EQ(json["tracks"], 2);
    EXPECT_EQ(json["shown"], 1);
    EXPECT_EQ(json["unreadable"], 1);
    EXPECT_EQ(json["points"], 4);
    EXPECT_EQ(json["length"], 500.0);
    EXPECT_EQ(json["duration"], 600);
    EXPECT_EQ(json["start"], Time(100));
    EXPECT_EQ(json["end"], Time(1000));
    EXPECT_EQ(json["longest"], "b");
    EXPECT_TRUE(Contains(Run({"info"}).out, "tracks            2, 1 of them shown"));
}

TEST_F(InfoCommand, UnknownName_IsCode1) {
    const ProcessResult run = Run({"info", "nowhere"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "qtrace info: no track named nowhere\n");
}

TEST_F(InfoCommand, ExactLetters_ComeBeforeOtherCase) {
    AddTrack("Lake", {{0, 0}, {100, 50}});
    AddTrack("lake", {{0, 0}, {200, 50}});
    EXPECT_EQ(Json({"info", "lake"})["name"], "lake");
    EXPECT_EQ(Json({"info", "Lake"})["name"], "Lake");
}

TEST_F(PointsCommand, Csv_IsTheFileToItsLastDigit) {
    AddTrack("Lake", {{0, 0, 400.25}, {100, 50}});
    EXPECT_EQ(Run({"points", "Lake", "--csv"}).out,
              "time,latitude,longitude,altitude\n2024-05-12T08:00:00Z,47.000000,8.000000,400.25\n"
              "2024-05-12T08:00:50Z,47.000900,8.000000,400.00\n");
}

TEST_F(PointsCommand, Table_CountsThePointsAndTheDistance) {
    AddTrack("Lake");
    const ProcessResult run = Run({"points", "Lake"});
    EXPECT_TRUE(Contains(run.out, "POINT  TIME")) << run.out;
    EXPECT_TRUE(Contains(run.out, "    3  2024-05-12 08:02:30 UTC  47.002700   8.000000   400.0 m     300 m\n"))
        << run.out;
}

TEST_F(PointsCommand, Simplified_DropsPointsOnTheLine) {
    AddTrack("Lake");
    EXPECT_EQ(Json({"points", "Lake"}).size(), 3u);
    EXPECT_EQ(Json({"points", "Lake", "--simplified"}).size(), 2u);
    EXPECT_EQ(Json({"points", "Lake", "--simplified", "5"}).size(), 2u);
    EXPECT_EQ(Json({"points", "Lake", "--simplified", "level3"}).size(), 2u);
}

TEST_F(PointsCommand, WrongUsage_IsCode2) {
    AddTrack("Lake");
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{"points"},
                                               {"points", "Lake", "--simplified", "0"},
                                               {"points", "Lake", "--simplified", "level21"},
                                               {"points", "Lake", "--simplified", "level1.5"},
                                               {"points", "Lake", "--simplified", "nan"},
                                               {"points", "Lake", "--csv", "--json"}})
        EXPECT_EQ(Run(wrong).exitCode, 2) << ::testing::PrintToString(wrong);
    EXPECT_EQ(Run({"points", "nowhere"}).exitCode, 1);
}

TEST_F(PointsCommand, BrokenPipe_IsNoCrash) {
    std::vector<Place> many;
    for (int i = 0; i < 5000; ++i) many.push_back({i * 2.0, i});
    AddTrack("long", many);
    EXPECT_EQ(RunInShell("\"$@\" | head -1", {"points", "long", "--csv"}).out,
              "time,latitude,longitude,altitude\n");
    EXPECT_EQ(RunInShell("\"$@\" >/dev/full", {"points", "long"}).exitCode, 1);
}

}  // namespace
}  // namespace host
