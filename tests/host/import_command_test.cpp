// `qtrace import`. What is understood of a document: gpx_reader_test.cpp. Real files:
// import_real_files_test.cpp.
#include <gtest/gtest.h>

#include "tests/host/commands.h"
#include "tests/support/gpx_points.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class Import : public Commands {
 protected:
    ProcessResult Take(std::vector<std::string> arguments, const ProcessOptions& options = {}) const {
        return Run("import", arguments, options);
    }
};

TEST_F(Import, Track_IsStoredUnderItsNameWithItsPoints) {
    const ProcessResult run = Take({File("a.gpx", Gpx(GpxTrackText("Lake", 3)))});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(Contains(run.out, "imported  Lake, 3 points\n")) << run.out;
    const std::vector<GpxPoint> expected = {{"47.100000", "8.500000", "2024-05-12T08:00:10Z"},
                                            {"47.101000", "8.500000", "2024-05-12T08:00:11Z"},
                                            {"47.102000", "8.500000", "2024-05-12T08:00:12Z"}};
    EXPECT_EQ(GpxPointsOf(Track("Lake")), expected);
}

TEST_F(Import, Original_StaysByteForByte) {
    const std::string bytes =
        Gpx(GpxTrackText("Lake", 3)) + "\n\n";  // line feeds, which the library would change
    const std::string file = File("a.gpx", bytes);
    const auto time = fs::last_write_time(file);
    ASSERT_EQ(Take({file}).exitCode, 0);
    EXPECT_EQ(ReadFile(file), bytes);
    EXPECT_EQ(fs::last_write_time(file), time);
    EXPECT_EQ(Documents(), std::vector<std::string>{"a.gpx"});
}

TEST_F(Import, SeveralTracks_BecomeSeveral) {
    const ProcessResult run =
        Take({File("trip.gpx", Gpx(GpxTrackText("Out", 3) + GpxTrackText("", 4) + GpxTrackText("", 5)))});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(GpxPointsOf(Track("Out")).size(), 3u);
    EXPECT_EQ(GpxPointsOf(Track("trip")).size(), 4u);
    EXPECT_EQ(GpxPointsOf(Track("trip_2")).size(), 5u);
}

TEST_F(Import, NameOption_NamesThemAll) {
    const std::string file = File("a.gpx", Gpx(GpxTrackText("A", 3) + GpxTrackText("B", 4)));
    EXPECT_EQ(Take({file, "--name", "Mine"}).exitCode, 0);
    EXPECT_TRUE(fs::exists(Track("Mine")) && fs::exists(Track("Mine_2")));
}

TEST_F(Import, NameThatNoFileMayHave_IsChangedAndTold) {
    const ProcessResult run = Take({File("a.gpx", Gpx(GpxTrackText("../../12:30", 3)))});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(fs::exists(Track(".._.._12_30")));
    EXPECT_TRUE(Contains(run.out, "instead of the name ../../12:30")) << run.out;
}

TEST_F(Import, LongName_IsCutAtACharactersEnd) {
    std::string name;
    for (int i = 0; i < 20; ++i) name += "ü";
    EXPECT_EQ(Take({File("a.gpx", Gpx(GpxTrackText(name, 3)))}).exitCode, 0);
    EXPECT_TRUE(fs::exists(Track(name.substr(0, 32))));
}

TEST_F(Import, SameTrackTwice_IsSkippedAndSaidSo) {
    const std::string file = File("a.gpx", Gpx(GpxTrackText("Lake", 3)));
    ASSERT_EQ(Take({file}).exitCode, 0);
    const ProcessResult again = Take({file});
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_TRUE(Contains(again.out, "the library has its points already, as Lake")) << again.out;
    EXPECT_FALSE(fs::exists(Track("Lake_2")));
    EXPECT_EQ(Take({file, "--again"}).exitCode, 0);
    EXPECT_TRUE(fs::exists(Track("Lake_2")));
}

TEST_F(Import, OtherTrackOfAsManyPoints_IsNoRepetition) {
    ASSERT_EQ(Take({File("a.gpx", Gpx(GpxTrackText("Lake", 3)))}).exitCode, 0);
    std::string other = Gpx(GpxTrackText("Lake", 3));
    other.replace(other.find("47.102"), 6, "47.103");
    EXPECT_EQ(Take({File("b.gpx", other)}).exitCode, 0);
    EXPECT_TRUE(fs::exists(Track("Lake_2")));
}

// The library reads a point without altitude as it reads the point before, and writes none for 0.
TEST_F(Import, AltitudeOfZero_StaysZeroBehindAHill) {
    const std::string point = "<trkpt lat='1' lon='1'><ele>";
    ASSERT_EQ(Take({File("a.gpx", Gpx("<trk><name>Sea</name><trkseg>" + point + "7</ele></trkpt>" + point +
                                      "0</ele></trkpt></trkseg></trk>"))})
                  .exitCode,
              0);
    ASSERT_EQ(Run("export", {"Sea", Path("sea.csv")}).exitCode, 0);
    EXPECT_EQ(ReadFile(Path("sea.csv")),
              "track,segment,latitude,longitude,altitude_m,time,speed_m_s,course_deg\n"
              "\"Sea\",1,1,1,7,,,\n"
              "\"Sea\",1,1,1,0,,,\n");
}

// At the coast some points lie at 0 and some were never measured.
TEST_F(Import, AltitudeOfZero_IsToldFromNone) {
    const std::string point = "<trkpt lat='1' lon='1'>";
    const std::string track =
        point + "</trkpt>" + point + "<ele>0</ele></trkpt>" + point + "<ele>2</ele></trkpt>";
    ASSERT_EQ(Take({File("a.gpx", Gpx("<trk><name>Sea</name><trkseg>" + track + "</trkseg></trk>"))}).exitCode,
              0);
    const auto points = Json("points", {"Sea"});
    EXPECT_TRUE(points[0]["altitude"].is_null());
    EXPECT_EQ(points[1]["altitude"].dump(), "0.0");
    EXPECT_EQ(points[2]["altitude"], 2);
    EXPECT_EQ(Json("info", {"Sea"})["lowest"].dump(), "0.0");
    EXPECT_TRUE(Contains(Run("points", {"Sea"}).out, "  0.0 m  "));
    ASSERT_EQ(Run("export", {"Sea", Path("sea.csv")}).exitCode, 0);
    EXPECT_TRUE(Contains(ReadFile(Path("sea.csv")), "\"Sea\",1,1,1,,,,\n\"Sea\",1,1,1,0,,,\n"));
}

TEST_F(Import, TimesBefore1970AndIn2038_AreKept) {
    std::string text = Gpx(GpxTrackText("Old", 2));
    text.replace(text.find("2024-05-12T08:00:10Z"), 20, "1961-04-12T06:07:00Z");
    text.replace(text.find("2024-05-12T08:00:11Z"), 20, "2038-01-19T03:14:07Z");
    ASSERT_EQ(Take({File("a.gpx", text)}).exitCode, 0);
    ASSERT_EQ(Run("export", {"Old", Path("old.csv")}).exitCode, 0);
    const std::string csv = ReadFile(Path("old.csv"));
    EXPECT_TRUE(Contains(csv, "1961-04-12T06:07:00Z") && Contains(csv, "2038-01-19T03:14:07Z")) << csv;
}

TEST_F(Import, DamagedFile_GivesItsPointsAndCode1) {
    const std::string whole = Gpx(GpxTrackText("Lake", 10));
    const ProcessResult run = Take({File("cut.gpx", whole.substr(0, whole.find("<trkpt lat=\"47.107") + 9))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(GpxPointsOf(Track("Lake")).size(), 7u);
    EXPECT_TRUE(Contains(run.err, "cut.gpx: line 2: unclosed token; 7 whole points before it")) << run.err;
}

TEST_F(Import, FailedFiles_AreNamedAndTheRestGoesOn) {
    const ProcessResult run = Take({Path("missing.gpx"), m_folder.Path().string(), File("a.gpx", "\x1f\x8b"),
                                    File("good.gpx", Gpx(GpxTrackText("Good", 3)))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "missing.gpx: No such file")) << run.err;
    EXPECT_TRUE(Contains(run.err, "Is a directory")) << run.err;
    EXPECT_TRUE(Contains(run.err, "compressed (gzip)")) << run.err;
    EXPECT_TRUE(fs::exists(Track("Good")));
}

TEST_F(Import, RoutesWaypointsAndEmptyTracks_AreNamedAsSkipped) {
    const ProcessResult run =
        Take({File("a.gpx", Gpx("<wpt lat='1' lon='1'/><rte><rtept lat='1' lon='1'/></rte>"
                                "<trk><name>Nothing</name></trk>" +
                                GpxTrackText("Good", 3)))});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Contains(run.out, "skipped   Nothing: it has no points")) << run.out;
    EXPECT_TRUE(Contains(run.out, "skipped   1 route of 1 point, 1 waypoint")) << run.out;
}

TEST_F(Import, TimesThatGoBack_AreTold) {
    std::string text = Gpx(GpxTrackText("A", 3));
    text.replace(text.find("08:00:11Z"), 9, "07:00:11Z");
    EXPECT_TRUE(Contains(Run("import", {File("a.gpx", text)}).out, "1 time goes back"));
}

TEST_F(Import, FileWithoutATrack_IsCode1) {
    const ProcessResult run = Take({File("a.gpx", Gpx("<wpt lat='1' lon='1'/>"))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "it has no track with points, only 1 waypoint")) << run.err;
}

TEST_F(Import, Json_TellsEachFileAndTrack) {
    const auto json = Json("import", {File("a.gpx", Gpx("<wpt lat='1' lon='1'/>" + GpxTrackText("A:B", 3)))});
    const auto file = json.at("files").at(0);
    EXPECT_EQ(file.at("tracks").at(0).at("name"), "A_B");
    EXPECT_EQ(file.at("tracks").at(0).at("wanted_name"), "A:B");
    EXPECT_EQ(file.at("tracks").at(0).at("points"), 3);
    EXPECT_EQ(file.at("skipped_waypoints"), 1);
    EXPECT_TRUE(file.at("problem").is_null());
}

TEST_F(Import, StandardInput_IsRead) {
    Process process(Command("import", {"-", "--name", "Piped"}));
    process.Write(Gpx(GpxTrackText("", 3)));
    EXPECT_EQ(process.Wait().exitCode, 0);
    EXPECT_TRUE(fs::exists(Track("Piped")));
}

TEST_F(Import, WrongUsage_IsCode2) {
    EXPECT_EQ(Take({}).exitCode, 2);
    EXPECT_EQ(Take({"a.gpx", "--no-such-option"}).exitCode, 2);
}

TEST_F(Import, ReadOnlyDeviceFolder_IsNamedWithTheReason) {
    fs::permissions(m_folder.Path(), fs::perms(0755));
    const std::string file = File("a.gpx", Gpx(GpxTrackText("A", 3)));
    fs::create_directory(m_device);
    fs::permissions(m_device, fs::perms(0555));
    ProcessOptions options;
    options.asNobody = true;
    const ProcessResult run = Take({file}, options);
    fs::permissions(m_device, fs::perms(0755));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "A is not imported: ") && Contains(run.err, "Permission denied")) << run.err;
}

TEST_F(Import, NoSpace_IsCode1AndNothingIsLeft) {
    const std::string file = File("a.gpx", Gpx(GpxTrackText("A", 30)));
    ProcessOptions options;
    options.fileSizeLimit = 1000;
    const ProcessResult run = Take({file}, options);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "A is not imported: ")) << run.err;
    EXPECT_FALSE(fs::exists(Track("A")));
}

TEST_F(Import, OutputThatCannotBeWritten_IsCode1AndTheTrackIsThere) {
    EXPECT_EQ(RunInto("/dev/full", "import", {File("a.gpx", Gpx(GpxTrackText("A", 3)))}).exitCode, 1);
    EXPECT_TRUE(fs::exists(Track("A")));
}

}  // namespace
}  // namespace host
