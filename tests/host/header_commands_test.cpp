// `qtrace rename`, `color`, `show` and `hide`: what they change, what they leave, and what they say when the
// medium does not take it.
#include <gtest/gtest.h>

#include "qtrace.h"
#include "tests/host/library_program.h"
#include "tests/support/recorded_data.h"

namespace fs = std::filesystem;

namespace host {
namespace {

using RenameCommand = LibraryProgram;
using ColorCommand = LibraryProgram;
using ShowCommand = LibraryProgram;

TEST_F(RenameCommand, Track_HasAnotherNameInTheFileAndOnDisk) {
    AddTrack("Lake", {{0, 0}, {100, 50}, {300, 150}}, 0x0080ff, false);
    const auto points = PointsOf("Lake");
    const ProcessResult run = Run({"rename", "lake", "Hügel"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Names(), std::vector<std::string>{"Hügel.gpx"});
    EXPECT_EQ(PointsOf("Hügel"), points);
    const auto json = Json({"list"});
    EXPECT_EQ(json[0]["name"], "Hügel");
    EXPECT_EQ(json[0]["color"], "#ff8000");
    EXPECT_EQ(json[0]["shown"], false);
}

TEST_F(RenameCommand, LettersOfOtherCase_AreANewName) {
    AddTrack("lake");
    EXPECT_EQ(Run({"rename", "lake", "LAKE"}).exitCode, 0);
    EXPECT_EQ(Names(), std::vector<std::string>{"LAKE.gpx"});
}

TEST_F(RenameCommand, NameThatNoFileMayHave_IsChangedAndSaid) {
    AddTrack("Lake");
    const ProcessResult run = Run({"rename", "Lake", "../a/b"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Contains(run.err, "changed to .._a_b")) << run.err;
    EXPECT_EQ(Names(), std::vector<std::string>{".._a_b.gpx"});
}

TEST_F(RenameCommand, TakenName_IsRefused) {
    AddTrack("Lake");
    AddTrack("Hill");
    WriteFile(File("broken"), "x");
    const std::string before = TextOf("Hill");
    for (const char* taken : {"hill", "Hill", "broken"})
        EXPECT_EQ(Run({"rename", "Lake", taken}).exitCode, 1) << taken;
    EXPECT_EQ(Names(), (std::vector<std::string>{"Hill.gpx", "Lake.gpx", "broken.gpx"}));
    EXPECT_EQ(ReadFile(File("broken")), "x");
    EXPECT_EQ(PointsOf("Hill").size(), 3u);
}

TEST_F(RenameCommand, WrongUsage_IsCode2AndEmptyNameCode1) {
    AddTrack("Lake");
    EXPECT_EQ(Run({"rename", "Lake"}).exitCode, 2);
    EXPECT_EQ(Run({"rename", "Lake", " "}).exitCode, 1);
    EXPECT_EQ(Run({"rename", "nowhere", "x"}).exitCode, 1);
}

TEST_F(RenameCommand, NoRoom_LeavesTheTrackAsItWas) {
    AddTrack("Lake");
    const auto points = PointsOf("Lake");
    const ProcessResult run = Run({"rename", "Lake", "Hill"}, WithoutRoom());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "File too large")) << run.err;
    EXPECT_EQ(Names(), std::vector<std::string>{"Lake.gpx"});
    EXPECT_EQ(PointsOf("Lake"), points);
    EXPECT_EQ(Json({"list"})[0]["name"], "Lake");
}

TEST_F(RenameCommand, ReadOnlyFolder_IsTheReason) {
    AddTrack("Lake");
    const ProcessResult run = Run({"rename", "Lake", "Hill"}, AsNobodyInAReadOnlyFolder());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "Permission denied")) << run.err;
    EXPECT_EQ(Names(), std::vector<std::string>{"Lake.gpx"});
}

TEST_F(ColorCommand, Color_IsWrittenAndTheRestStays) {
    AddTrack("Lake", {{0, 0}, {100, 50}}, 0, false);
    const auto points = PointsOf("Lake");
    EXPECT_EQ(Run({"color", "Lake", "ff8000"}).out, "Lake is #ff8000\n");
    const auto json = Json({"list"})[0];
    EXPECT_EQ(json["color"], "#ff8000");
    EXPECT_EQ(json["shown"], false);
    EXPECT_EQ(json["length"], 100.0);
    EXPECT_EQ(PointsOf("Lake"), points);
}

TEST_F(ColorCommand, NoColor_IsCode2) {
    AddTrack("Lake");
    const std::string before = TextOf("Lake");
    EXPECT_EQ(Run({"color", "Lake", "red"}).exitCode, 2);
    EXPECT_EQ(Run({"color", "Lake"}).exitCode, 2);
    EXPECT_EQ(TextOf("Lake"), before);
}

TEST_F(ColorCommand, NoRoomAndNoRights_AreSaid) {
    AddTrack("Lake");
    const auto points = PointsOf("Lake");
    const ProcessResult noRoom = Run({"color", "Lake", "ff0000"}, WithoutRoom());
    EXPECT_EQ(noRoom.exitCode, 1);
    EXPECT_TRUE(Contains(noRoom.err, "the track is as it was")) << noRoom.err;
    const ProcessResult noRights = Run({"color", "Lake", "ff0000"}, AsNobodyInAReadOnlyFolder());
    EXPECT_EQ(noRights.exitCode, 1);
    EXPECT_TRUE(Contains(noRights.err, "read-only")) << noRights.err;
    EXPECT_EQ(PointsOf("Lake"), points);
}

// The whole file is written anew with one track: whatever else it holds would be gone.
TEST_F(ColorCommand, FileThatHoldsMore_IsLeftAloneUnlessForced) {
    const std::string more = "<wpt lat=\"47\" lon=\"8\"><name>Hut</name></wpt>\n<rte><name>Way</name></rte>\n";
    WriteFile(File("Lake"), Gpx("Lake", {{0, 0}, {100, 50}}, 0, true, more));
    const ProcessResult refused = Run({"color", "Lake", "ff0000"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(Contains(refused.err, "(1 waypoint, 1 route)")) << refused.err;
    EXPECT_TRUE(Contains(TextOf("Lake"), "Hut"));
    EXPECT_EQ(Run({"color", "Lake", "ff0000", "--force"}).exitCode, 0);
    EXPECT_EQ(Json({"list"})[0]["color"], "#ff0000");
    EXPECT_EQ(PointsOf("Lake").size(), 2u);
}

TEST_F(ColorCommand, FurtherTracksSegmentsAndExtensions_CountAsMore) {
    const std::string own = Gpx("Lake", {{0, 0}, {100, 50}});
    const auto with = [&own](const std::string& before, const std::string& text) {
        return std::string(own).insert(own.find(before), text);
    };
    WriteFile(File("a"), with("</gpx>", "<trk><trkseg>" + Point({0, 0}) + "</trkseg></trk>"));
    WriteFile(File("b"), with("</trk>", "<trkseg>" + Point({0, 0}) + "</trkseg>"));
    WriteFile(File("c"), with("</trkpt>", "<extensions><hr>61</hr></extensions>"));
    EXPECT_TRUE(Contains(Run({"color", "a", "ff0000"}).err, "(1 more track)"));
    EXPECT_TRUE(Contains(Run({"color", "b", "ff0000"}).err, "(several segments)"));
    EXPECT_TRUE(Contains(Run({"color", "c", "ff0000"}).err, "(extensions)"));
}

TEST_F(ColorCommand, PartsOfSeveralTracks_AreCounted) {
    const std::string waypoint = "<wpt lat=\"47\" lon=\"8\"/>\n";
    std::string text = Gpx("Lake", {{0, 0}, {100, 50}}, 0, true, waypoint + waypoint);
    const std::string track = "<trk><name>x</name><desc>y</desc><trkseg/><trkseg/></trk>";
    text.insert(text.find("</gpx>"), track + track + waypoint);
    WriteFile(File("Lake"), text);
    EXPECT_TRUE(Contains(Run({"color", "Lake", "ff0000"}).err, "(3 waypoints, 2 more tracks)"));
}

TEST_F(ColorCommand, WhatTheLibraryWrites_IsNotForeign) {
    AddTrack("Lake");
    ASSERT_EQ(Run({"color", "Lake", "ff0000"}).exitCode, 0);  // now the library's own writing
    EXPECT_EQ(Run({"color", "Lake", "00ff00"}).exitCode, 0);
}

TEST_F(ShowCommand, HiddenTrack_IsShownAndHiddenAgain) {
    AddTrack("a", {{0, 0}, {100, 50}}, 0, false);
    AddTrack("b", {{0, 0}, {100, 50}}, 0, false);
    EXPECT_EQ(Run({"show", "a", "b", "a"}).out, "a is shown\nb is shown\n");
    for (const auto& track : Json({"list"})) EXPECT_EQ(track["shown"], true);
    EXPECT_EQ(Run({"hide", "b"}).out, "b is hidden\n");
    EXPECT_TRUE(Contains(TextOf("b"), "<visible>0"));
    EXPECT_TRUE(Contains(TextOf("a"), "<visible>1"));
}

TEST_F(ShowCommand, UnknownNameAmongOthers_ChangesNothing) {
    AddTrack("a", {{0, 0}, {100, 50}}, 0, false);
    EXPECT_EQ(Run({"show", "a", "nowhere"}).exitCode, 1);
    EXPECT_TRUE(Contains(TextOf("a"), "<visible>0"));
    EXPECT_EQ(Run({"show"}).exitCode, 2);
}

// Ten tracks are shown at most; the eleventh is hidden in memory, which must not get into its file.
TEST_F(ShowCommand, EleventhShownTrack_StaysShownInItsFile) {
    for (int i = 10; i < 21; ++i) AddTrack("track " + std::to_string(i));
    EXPECT_EQ(Json({"info", "track 20"})["shown"], false);
    ASSERT_EQ(Run({"color", "track 20", "ff0000"}).exitCode, 0);
    EXPECT_TRUE(Contains(TextOf("track 20"), "<visible>1"));
    ASSERT_EQ(Run({"rename", "track 20", "track 99"}).exitCode, 0);
    EXPECT_TRUE(Contains(TextOf("track 99"), "<visible>1"));
    const ProcessResult run = Run({"show", "track 99"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Contains(run.err, "ten tracks")) << run.err;
}

TEST_F(ShowCommand, TrackHiddenByTheLimit_CanBeHiddenForGood) {
    for (int i = 10; i < 21; ++i) AddTrack("track " + std::to_string(i));
    EXPECT_EQ(Run({"hide", "track 20"}).exitCode, 0);
    EXPECT_TRUE(Contains(TextOf("track 20"), "<visible>0"));
}

TEST_F(ShowCommand, NoRoom_IsCode1) {
    AddTrack("a", {{0, 0}, {100, 50}}, 0, false);
    EXPECT_EQ(Run({"show", "a"}, WithoutRoom()).exitCode, 1);
    EXPECT_EQ(PointsOf("a").size(), 2u);
}

// By the library; 0 for a file that it takes for no track.
std::size_t PointsRead(const std::string& file) {
    CTrackProxy track(("\\UserData\\Track\\" + file).c_str());
    std::vector<TckPt, je_allocator<TckPt>> points;
    if (track.Load(nullptr)) track.GetPtList(points);
    return points.size();
}

// Whatever a stranger's file holds: refused, or its track is whole afterwards. All in one run, which is quick.
TEST_F(ShowCommand, RealFiles_AreRefusedOrKeepTheirTrack) {
    if (RecordedFiles("gpx").empty()) GTEST_SKIP() << "no recorded data here";
    for (const auto& file : RecordedFiles("gpx"))
        if (file.extension() == ".gpx") WriteFile(Tracks() / file.filename(), ReadFile(file));
    SetDeviceRoot(m_device.string());
    std::vector<std::string> command = {"show"};
    std::vector<std::size_t> before;
    for (const auto& track : Json({"list"})) {
        command.push_back(track["file"]);
        before.push_back(PointsRead(command.back()));
    }
    ASSERT_GT(before.size(), 20u);
    const ProcessResult run = Run(command);
    const auto lines = std::count(run.out.begin(), run.out.end(), '\n');
    std::ptrdiff_t refused = 0;
    for (std::size_t at = 0; (at = run.err.find(" holds more than ", at)) != std::string::npos; ++at) ++refused;
    EXPECT_EQ(lines + refused, static_cast<std::ptrdiff_t>(before.size())) << run.out << run.err;
    EXPECT_GT(lines, 0);
    EXPECT_GT(refused, 0);
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ(PointsRead(command[i + 1]), before[i]) << command[i + 1];
}

}  // namespace
}  // namespace host
