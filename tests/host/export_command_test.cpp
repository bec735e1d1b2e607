// `qtrace export`, and the file that a document goes to (host/text/output_file.h). The formats:
// track_document_test.cpp.
#include <gtest/gtest.h>

#include "tests/host/commands.h"
#include "tests/support/gpx_points.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class Export : public Commands {
 protected:
    void SetUp() override {
        ASSERT_EQ(Run("import", {File("lake.gpx", Gpx(GpxTrackText("Lake", 5)))}).exitCode, 0);
        fs::remove(Path("lake.gpx"));
    }
    ProcessResult Put(const std::vector<std::string>& arguments, const ProcessOptions& options = {}) const {
        return Run("export", arguments, options);
    }
};

TEST_F(Export, Gpx_IsReadByGpsbabelWithTheSamePoints) {
    ASSERT_EQ(Put({"Lake", Path("out.gpx")}).exitCode, 0);
    if (!HasGpsbabel()) GTEST_SKIP() << "no gpsbabel here";
    EXPECT_EQ(GpxPointsByGpsbabel(Path("out.gpx")), GpxPointsOf(Track("Lake")));
}

TEST_F(Export, OwnExport_IsRecognisedByTheImport) {
    ASSERT_EQ(Put({"Lake", Path("out.gpx")}).exitCode, 0);
    const ProcessResult run = Run("import", {Path("out.gpx")});
    EXPECT_TRUE(Contains(run.out, "the library has its points already, as Lake")) << run.out;
}

TEST_F(Export, EveryFormat_IsReadByGdal) {
    if (RunProcess({"ogrinfo", "--version"}).exitCode != 0) GTEST_SKIP() << "no ogrinfo here";
    for (const char* format : {"gpx", "geojson", "kml", "csv"}) {
        const std::string file = Path(std::string("out.") + format);
        ASSERT_EQ(Put({"Lake", file}).exitCode, 0);
        const ProcessResult read = RunProcess({"ogrinfo", "-ro", "-al", "-so", file});
        EXPECT_EQ(read.exitCode, 0) << format;
        const std::string count = std::string(format) == "csv" ? "Feature Count: 5" : "Feature Count: 1";
        EXPECT_TRUE(Contains(read.out, count)) << read.out << read.err;
    }
}

TEST_F(Export, SeveralTracks_GoIntoOneDocument) {
    ASSERT_EQ(Run("import", {File("b.gpx", Gpx(GpxTrackText("Hill", 7)))}).exitCode, 0);
    ASSERT_EQ(Put({"Lake", "Hill", Path("out.geojson")}).exitCode, 0);
    const auto features = nlohmann::json::parse(ReadFile(Path("out.geojson"))).at("features");
    ASSERT_EQ(features.size(), 2u);
    EXPECT_EQ(features[1].at("properties").at("name"), "Hill");
    EXPECT_EQ(features[1].at("geometry").at("coordinates").size(), 7u);
}

TEST_F(Export, StandardOutput_GetsTheDocumentAlone) {
    const ProcessResult run = Put({"Lake", "-", "--format", "csv"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.starts_with("track,segment,latitude"));
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 6);
    EXPECT_TRUE(Put({"Lake", "-"}).out.starts_with("<?xml"));
}

TEST_F(Export, UnknownTrack_IsCode1AndWritesNothing) {
    const ProcessResult run = Put({"Pond", Path("out.gpx")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "qtrace export: no track named Pond\n");
    EXPECT_TRUE(Documents().empty());
}

TEST_F(Export, WrongUsage_IsCode2) {
    EXPECT_EQ(Put({}).exitCode, 2);
    EXPECT_EQ(Put({"Lake"}).exitCode, 2);
    EXPECT_EQ(Put({"Lake", Path("out.xyz")}).exitCode, 2);
    EXPECT_EQ(Put({"Lake", Path("out.gpx"), "--format", "shp"}).exitCode, 2);
    EXPECT_TRUE(Documents().empty());
}

TEST_F(Export, ExistingFile_IsReplacedByForceOnly) {
    const std::string file = File("out.gpx", "precious");
    const ProcessResult refused = Put({"Lake", file});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(Contains(refused.err, "exists already")) << refused.err;
    EXPECT_EQ(ReadFile(file), "precious");
    EXPECT_EQ(Put({"Lake", file, "--force"}).exitCode, 0);
    EXPECT_TRUE(ReadFile(file).starts_with("<?xml"));
    EXPECT_EQ(Documents(), std::vector<std::string>{"out.gpx"});
}

TEST_F(Export, SymbolicLink_StaysAndItsFileIsReplaced) {
    File("real.gpx", "old");
    fs::create_symlink("real.gpx", Path("link.gpx"));
    EXPECT_EQ(Put({"Lake", Path("link.gpx"), "--force"}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(Path("link.gpx")));
    EXPECT_TRUE(ReadFile(Path("real.gpx")).starts_with("<?xml"));
}

TEST_F(Export, LinkToNothing_StaysAndItsFileIsMade) {
    fs::create_directory(Path("elsewhere"));
    fs::create_symlink("elsewhere/real.gpx", Path("second.gpx"));
    fs::create_symlink("second.gpx", Path("link.gpx"));
    EXPECT_EQ(Put({"Lake", Path("link.gpx")}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(Path("link.gpx")) && fs::is_symlink(Path("second.gpx")));
    EXPECT_TRUE(ReadFile(Path("elsewhere/real.gpx")).starts_with("<?xml"));
    fs::create_symlink("circle.gpx", Path("circle.gpx"));
    EXPECT_EQ(Put({"Lake", Path("circle.gpx")}).exitCode, 1);
}

TEST_F(Export, ReplacedFile_KeepsItsRights) {
    const std::string file = File("out.gpx", "old");
    for (const unsigned rights : {0600u, 0664u}) {
        fs::permissions(file, fs::perms(rights));
        EXPECT_EQ(Put({"Lake", file, "--force"}).exitCode, 0);
        EXPECT_EQ(fs::status(file).permissions(), fs::perms(rights));
    }
}

TEST_F(Export, LongestName_IsWritten) {
    const std::string name = std::string(251, 'x') + ".gpx";
    EXPECT_EQ(Put({"Lake", Path(name)}).exitCode, 0);
    EXPECT_TRUE(fs::exists(Path(name)));
}

TEST_F(Export, NoSpace_LeavesNothingAndTheOldFile) {
    const std::string file = File("out.gpx", "precious");
    ProcessOptions options;
    options.fileSizeLimit = 300;
    const ProcessResult run = Put({"Lake", file, "--force"}, options);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "out.gpx cannot be written: File too large")) << run.err;
    EXPECT_EQ(ReadFile(file), "precious");
    EXPECT_EQ(Documents(), std::vector<std::string>{"out.gpx"});
}

TEST_F(Export, FullDevice_IsCode1AndStaysADevice) {
    const ProcessResult run = Put({"Lake", "/dev/full", "--format", "gpx", "--force"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "No space left on device")) << run.err;
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_EQ(RunInto("/dev/full", "export", {"Lake", "-"}).exitCode, 1);
}

TEST_F(Export, FolderThatTakesNothing_IsNamedWithTheReason) {
    const ProcessResult missing = Put({"Lake", Path("none/out.gpx")});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(Contains(missing.err, "No such file or directory")) << missing.err;
    fs::create_directory(Path("folder.gpx"));
    const ProcessResult folder = Put({"Lake", Path("folder.gpx"), "--force"});
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_TRUE(Contains(folder.err, "is a folder")) << folder.err;
}

TEST_F(Export, BrokenPipe_EndsQuietly) {
    std::string points = "<trk><name>Long</name><trkseg>";
    for (int i = 0; i < 5000; ++i) points += "<trkpt lat='" + std::to_string(i / 100.0) + "' lon='1'/>";
    ASSERT_EQ(Run("import", {File("long.gpx", Gpx(points + "</trkseg></trk>"))}).exitCode, 0);
    const ProcessResult run = RunIntoBrokenPipe("export", {"Long", "-"});
    EXPECT_EQ(run.exitCode, 141);  // the signal SIGPIPE
    EXPECT_EQ(run.err, "");
}

}  // namespace
}  // namespace host
