// `qtrace reverse`, `delete`, `merge` and `split`: new tracks, and tracks that go.
#include <gtest/gtest.h>

#include "tests/host/library_program.h"

namespace fs = std::filesystem;

namespace host {
namespace {

using ReverseCommand = LibraryProgram;
using DeleteCommand = LibraryProgram;
using MergeCommand = LibraryProgram;
using SplitCommand = LibraryProgram;
using FileNames = std::vector<std::string>;

std::vector<GpxPoint> Reversed(std::vector<GpxPoint> points) {
    std::reverse(points.begin(), points.end());
    return points;
}

std::vector<GpxPoint> Joined(std::vector<GpxPoint> points, const std::vector<GpxPoint>& more) {
    points.insert(points.end(), more.begin(), more.end());
    return points;
}

TEST_F(ReverseCommand, Track_HasItsPointsTheOtherWayRound) {
    AddTrack("Lake", {{0, 0}, {100, 50}, {300, 150}}, 0x0080ff, false);
    const auto points = PointsOf("Lake");
    const ProcessResult run = Run({"reverse", "Lake"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Names(), FileNames{"Lake.gpx"});
    EXPECT_EQ(PointsOf("Lake"), Reversed(points));
    const auto json = Json({"list"})[0];
    EXPECT_EQ(json["name"], "Lake");
    EXPECT_EQ(json["color"], "#ff8000");
    EXPECT_EQ(json["shown"], false);
    EXPECT_EQ(json["start"], Time(0));
    EXPECT_EQ(json["end"], Time(150));
}

TEST_F(ReverseCommand, As_LeavesTheTrackAlone) {
    AddTrack("Lake");
    const auto points = PointsOf("Lake");
    EXPECT_EQ(Run({"reverse", "Lake", "--as", "Back"}).exitCode, 0);
    EXPECT_EQ(PointsOf("Lake"), points);
    EXPECT_EQ(PointsOf("Back"), Reversed(points));
    EXPECT_EQ(Run({"reverse", "Lake", "--as", "back"}).exitCode, 1);  // taken
}

TEST_F(ReverseCommand, NoRoomOrNoRights_LeaveTheTrackAsItWas) {
    AddTrack("Lake");
    const auto points = PointsOf("Lake");
    EXPECT_EQ(Run({"reverse", "Lake"}, WithoutRoom()).exitCode, 1);
    EXPECT_EQ(Names(), FileNames{"Lake.gpx"});
    EXPECT_EQ(PointsOf("Lake"), points);
    EXPECT_EQ(Run({"reverse", "Lake"}, AsNobodyInAReadOnlyFolder()).exitCode, 1);
    EXPECT_EQ(Names(), FileNames{"Lake.gpx"});
    EXPECT_EQ(PointsOf("Lake"), points);
}

// A receiver knows neither altitude nor time at first. A stored track cannot keep that at its other end.
TEST_F(ReverseCommand, UnknownAltitude_BecomesThatOfThePointBefore) {
    AddTrack("Lake");
    Edit("Lake", "<ele>400.000000</ele>", "");
    ASSERT_TRUE(Json({"points", "Lake"})[0]["altitude"].is_null());
    Edit("Lake", "<ele>400.000000</ele>", "<ele>-0.000000</ele>");
    const ProcessResult run = Run({"reverse", "Lake"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "note: 1 point knows no altitude: it is stored with that of the point before it\n");
    const auto points = Json({"points", "Lake"});
    EXPECT_EQ(points[0]["altitude"], 400);
    EXPECT_EQ(points[1]["altitude"], 0);
    EXPECT_EQ(points[2]["altitude"], 0);
}

TEST_F(ReverseCommand, UnknownTimeBehindAKnownOne_IsTheReason) {
    AddTrack("Lake");
    Edit("Lake", "<time>" + Time(0) + "</time>", "");
    const auto points = PointsOf("Lake");
    const ProcessResult run = Run({"reverse", "Lake"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "point 3 knows no time and stands behind one that does")) << run.err;
    EXPECT_EQ(PointsOf("Lake"), points);
    EXPECT_EQ(Names(), FileNames{"Lake.gpx"});
}

TEST_F(DeleteCommand, Yes_DeletesAndSays) {
    for (const char* name : {"a", "b", "c"}) AddTrack(name);
    EXPECT_EQ(Run({"delete", "a", "c", "a", "--yes"}).out, "Deleted a\nDeleted c\n");
    EXPECT_EQ(Names(), FileNames{"b.gpx"});
}

TEST_F(DeleteCommand, WithoutTerminal_IsWrongUsageAndDeletesNothing) {
    AddTrack("a");
    const ProcessResult run = Run({"delete", "a"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(Contains(run.err, "--yes")) << run.err;
    EXPECT_EQ(Names(), FileNames{"a.gpx"});
    EXPECT_EQ(Run({"delete"}).exitCode, 2);
}

TEST_F(DeleteCommand, UnknownNameAmongOthers_DeletesNothing) {
    AddTrack("a");
    EXPECT_EQ(Run({"delete", "a", "nowhere", "--yes"}).exitCode, 1);
    EXPECT_EQ(Names(), FileNames{"a.gpx"});
}

TEST_F(DeleteCommand, OnATerminal_AsksAndTakesYesForYesOnly) {
    if (!fs::exists("/usr/bin/script")) GTEST_SKIP() << "no script(1) here";
    AddTrack("a");
    const auto answer = [this](const std::string& text) {
        return RunInShell(
            "printf '" + text + "\\n' | script -qec \"'" + QTRACE_PROGRAM + "' delete a\" /dev/null", {});
    };
    const ProcessResult no = answer("n");
    EXPECT_TRUE(Contains(no.out, "Delete 1 track for good: a?")) << no.out;
    EXPECT_EQ(no.exitCode, 1);
    EXPECT_EQ(answer("").exitCode, 1);
    EXPECT_EQ(Names(), FileNames{"a.gpx"});
    EXPECT_EQ(answer("y").exitCode, 0);
    EXPECT_EQ(Names(), FileNames{});
}

TEST_F(DeleteCommand, FileThatStays_IsCode1) {
    AddTrack("a");
    const ProcessResult run = Run({"delete", "a", "--yes"}, AsNobodyInAReadOnlyFolder());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "a.gpx could not be deleted: Permission denied")) << run.err;
    EXPECT_EQ(run.out, "");
}

TEST_F(MergeCommand, Tracks_AreJoinedInTimeOrder) {
    AddTrack("late", {{500, 900}, {600, 950}}, 0x0080ff);
    AddTrack("early", {{0, 0}, {100, 50}});
    const ProcessResult run = Run({"merge", "late", "early", "--as", "both"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(PointsOf("both"), Joined(PointsOf("early"), PointsOf("late")));
    EXPECT_EQ(Names(), (FileNames{"both.gpx", "early.gpx", "late.gpx"}));
    EXPECT_EQ(Json({"info", "both"})["color"], "#ff8000");
}

TEST_F(MergeCommand, Delete_RemovesTheOriginals) {
    AddTrack("a");
    AddTrack("b", {{500, 900}, {600, 950}});
    EXPECT_EQ(Run({"merge", "a", "b", "--as", "both", "--delete"}).exitCode, 0);
    EXPECT_EQ(Names(), FileNames{"both.gpx"});
    EXPECT_EQ(PointsOf("both").size(), 5u);
}

TEST_F(MergeCommand, WhatCannotBe_KeepsTheOriginals) {
    AddTrack("a");
    AddTrack("b", {{500, 900}, {600, 950}});
    const std::vector<std::string> merge = {"merge", "a", "b", "--as", "both", "--delete"};
    EXPECT_EQ(Run(merge, WithoutRoom()).exitCode, 1);
    EXPECT_EQ(Names(), (FileNames{"a.gpx", "b.gpx"}));
    EXPECT_EQ(Run({"merge", "a", "b", "--as", "A", "--delete"}).exitCode, 1);
    EXPECT_EQ(Run({"merge", "a", "a", "--as", "c"}).exitCode, 1);
    EXPECT_EQ(Run({"merge", "a", "--as", "c"}).exitCode, 2);
    EXPECT_EQ(Run({"merge", "a", "b"}).exitCode, 2);
    EXPECT_EQ(Run(merge, AsNobodyInAReadOnlyFolder()).exitCode, 1);
    EXPECT_EQ(Names(), (FileNames{"a.gpx", "b.gpx"}));
}

TEST_F(MergeCommand, OverlappingTimes_AreSaid) {
    AddTrack("a", {{0, 0}, {100, 500}});
    AddTrack("b", {{500, 100}, {600, 950}});
    EXPECT_TRUE(Contains(Run({"merge", "a", "b", "--as", "c"}).err, "b starts before a has ended"));
}

TEST_F(MergeCommand, UnknownAltitudes_AreSaidWhereTheyAreGivenOne) {
    AddTrack("high", {{0, 0}, {100, 50}});
    AddTrack("flat", {{500, 900}, {600, 950}});
    for (int point = 0; point < 2; ++point) Edit("flat", "<ele>400.000000</ele>", "");
    EXPECT_EQ(Run({"merge", "high", "flat", "--as", "both"}).err,
              "note: 2 points know no altitude: they are stored with that of the point before them\n");
    AddTrack("early", {{0, 0}, {100, 50}});
    for (int point = 0; point < 2; ++point) Edit("early", "<ele>400.000000</ele>", "");
    AddTrack("late", {{500, 900}, {600, 950}});
    EXPECT_EQ(Run({"merge", "early", "late", "--as", "other"}).err, "");
}

TEST_F(SplitCommand, Gap_MakesNumberedTracks) {
    AddTrack("Lake", {{0, 0}, {100, 50}, {200, 1850}, {300, 1900}, {400, 3700}}, 0x0080ff, false);
    AddTrack("Lake_2");
    const auto points = PointsOf("Lake");
    const ProcessResult run = Run({"split", "Lake"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "Lake_1  2 points\nLake_3  2 points\nLake_4  1 point\n");
    EXPECT_EQ(PointsOf("Lake"), points);
    EXPECT_EQ(Joined(Joined(PointsOf("Lake_1"), PointsOf("Lake_3")), PointsOf("Lake_4")), points);
    EXPECT_EQ(Json({"info", "Lake_4"})["shown"], false);
}

TEST_F(SplitCommand, GapAndDistance_AreAsAsked) {
    AddTrack("Lake", {{0, 0}, {10, 60}, {500, 80}, {510, 400}});
    EXPECT_TRUE(Contains(Run({"split", "Lake"}).out, "nothing to split"));
    EXPECT_EQ(Run({"split", "Lake", "--gap", "5m"}).out, "Lake_1  3 points\nLake_2  1 point\n");
    EXPECT_EQ(Run({"split", "Lake", "--distance", "400"}).out, "Lake_3  2 points\nLake_4  2 points\n");
    EXPECT_EQ(Run({"split", "Lake", "--distance", "400", "--gap", "300"}).out,
              "Lake_5  2 points\nLake_6  1 point\nLake_7  1 point\n");
    EXPECT_EQ(Run({"split", "Lake", "--gap", "1h30m"}).exitCode, 0);
    for (const char* wrong : {"0", "-5", "soon", "1m1h", "367d", "99999999999999999999"})
        EXPECT_EQ(Run({"split", "Lake", "--gap", wrong}).exitCode, 2) << wrong;
    EXPECT_EQ(Run({"split", "Lake", "--distance", "0"}).exitCode, 2);
}

TEST_F(SplitCommand, LongName_KeepsWithinTheLimit) {
    const std::string name = "Spaziergang am Zürichsee im Mai";  // 32 bytes
    AddTrack(name, {{0, 0}, {100, 5000}});
    EXPECT_EQ(Run({"split", name}).exitCode, 0);
    EXPECT_EQ(Names().size(), 3u);
    for (const auto& track : Json({"list"})) EXPECT_LE(track["name"].get<std::string>().size(), 32u);
}

TEST_F(SplitCommand, NoRoom_LeavesNoPieces) {
    AddTrack("Lake", {{0, 0}, {100, 50}, {200, 1850}});
    EXPECT_EQ(Run({"split", "Lake"}, WithoutRoom()).exitCode, 1);
    EXPECT_EQ(Names(), FileNames{"Lake.gpx"});
    ProcessOptions someRoom = Options();  // for the piece of one point, not for that of many
    someRoom.fileSizeLimit = 3000;
    std::vector<Place> places = {{0, 0}};
    for (int i = 0; i < 100; ++i) places.push_back({i * 10.0, 5000 + i});
    AddTrack("Lake", places);
    const ProcessResult run = Run({"split", "Lake"}, someRoom);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(Names(), FileNames{"Lake.gpx"}) << run.out << run.err;
    EXPECT_EQ(PointsOf("Lake").size(), 101u);
}

}  // namespace
}  // namespace host
