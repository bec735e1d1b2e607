// Every real GPX file beside the project through `qtrace import`, compared with what gpsbabel finds in it.
#include <gtest/gtest.h>

#include "tests/host/commands.h"
#include "tests/support/gpx_points.h"
#include "tests/support/recorded_data.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class ImportRealFiles : public Commands {
 protected:
    std::size_t Imported(const nlohmann::json& file) const {
        std::size_t points = 0;
        for (const auto& track : file.at("tracks"))
            if (!track.at("name").is_null()) points += track.at("points").get<std::size_t>();
        return points;
    }
};

// Nothing is skipped without a word: what is imported, named as bad and lost behind damage makes up the file.
TEST_F(ImportRealFiles, EveryFile_IsTakenOrNamed) {
    const auto files = RecordedFiles("gpx");
    if (files.empty()) GTEST_SKIP() << "no recorded data here";
    std::vector<std::string> arguments = {"--again", "--json"};
    for (const fs::path& file : files) arguments.push_back(File(file.filename().string(), ReadFile(file)));
    const ProcessResult run = Run("import", arguments);
    EXPECT_EQ(run.exitCode, 1);  // some hold no track
    const auto reports = nlohmann::json::parse(run.out).at("files");
    ASSERT_EQ(reports.size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(files[i]);
        EXPECT_EQ(ReadFile(Path(files[i].filename().string())), ReadFile(files[i]));
        EXPECT_TRUE(Imported(reports[i]) > 0 || !reports[i].at("problem").is_null());
    }
}

// Points of tracks that gpsbabel reads; files that it refuses, and those with points it does not check, differ.
TEST_F(ImportRealFiles, PointCounts_AreThoseOfGpsbabel) {
    const auto files = RecordedFiles("gpx");
    if (files.empty()) GTEST_SKIP() << "no recorded data here";
    if (!HasGpsbabel()) GTEST_SKIP() << "no gpsbabel here";
    std::vector<std::string> arguments = {"--again"};
    for (const fs::path& file : files) arguments.push_back(file.string());
    const auto reports = Json("import", arguments).at("files");
    int compared = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto reference = files[i].extension() == ".gpx" ? GpxPointsByGpsbabel(files[i]) : std::nullopt;
        if (!reference || reference->empty()) continue;
        std::size_t points = Imported(reports[i]);
        for (const auto& track : reports[i].at("tracks"))
            points += track.at("bad_positions").get<std::size_t>();
        EXPECT_EQ(points, reference->size()) << files[i];
        ++compared;
    }
    EXPECT_GE(compared, 30);
}

TEST_F(ImportRealFiles, DamagedFiles_GiveWhatIsInFrontOfTheDamage) {
    const auto cut = RecordedFile("gpx", "derived-truncated.gpx");
    const auto mixed = RecordedFile("gpx", "jpx-GPX_invalid_extensions.gpx");
    if (!cut || !mixed) GTEST_SKIP() << "no recorded data here";
    const ProcessResult run = Run("import", {cut->string(), mixed->string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "line 211: unclosed token; 63 whole points before it")) << run.err;
    EXPECT_TRUE(Contains(run.err, "line 39: mismatched tag; 2 whole points before it")) << run.err;
}

}  // namespace
}  // namespace host
