// `qtrace ring` and `qtrace salvage` on the files of a recording. The bytes: ring_image_test.cpp,
// salvage_test.cpp.
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "tests/host/commands.h"
#include "tests/host/ring_bytes.h"
#include "tests/support/gpx_points.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class RecordingCommands : public Commands {
 protected:
    RecordingCommands() { fs::create_directories(m_device / "App"); }
    void PutRing(const std::string& bytes) const { WriteFile(m_device / "App" / "Log.dat", bytes); }
};

using Ring = RecordingCommands;
using SalvageCommand = RecordingCommands;

TEST_F(Ring, Recording_IsShownWithoutTouchingIt) {
    const std::string bytes = RingBytes(1, {4, -1, 2, 3});
    PutRing(bytes);
    const auto json = Json("ring");
    EXPECT_EQ(json.at("start"), 1);
    EXPECT_EQ(json.at("count"), 4);
    EXPECT_EQ(json.at("good"), 3);
    EXPECT_EQ(json.at("empty"), 1);
    EXPECT_EQ(json.at("damaged"), 0);
    EXPECT_EQ(json.at("consistent"), true);
    EXPECT_EQ(json.at("oldest"), "2001-09-09T01:46:42Z");
    EXPECT_EQ(json.at("newest"), "2001-09-09T01:46:44Z");
    EXPECT_EQ(json.at("slices").size(), 1u);
    EXPECT_EQ(json.at("note"), "none");
    EXPECT_TRUE(json.at("recorder").is_null());
    EXPECT_EQ(ReadFile(m_device / "App" / "Log.dat"), bytes);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_device / "App"), fs::directory_iterator()), 1);
}

TEST_F(Ring, Records_AreListedWithTheirHealth) {
    std::string bytes = RingBytes(0, {0, 1, 2});
    bytes[60] ^= 1;
    PutRing(bytes);
    const auto records = Json("ring", {"--records"}).at("records");
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[1], nlohmann::json::parse(R"({"slot":1,"offset":52,"state":"damaged"})"));
    EXPECT_EQ(records[2].at("latitude"), RingFix(2).dLatitude);
    const std::string text = Run("ring", {"--records"}).out;
    EXPECT_TRUE(Contains(text, "slot 1  offset 52  damaged\n")) << text;
    EXPECT_TRUE(Contains(text, "2 good, 1 damaged")) << text;
}

TEST_F(Ring, DamagedFile_IsCalledSo) {
    PutRing(RingBytes(0, {0, 1, 2}) + "x");
    const ProcessResult run = Run("ring");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Contains(run.out, "damaged: header and size do not agree")) << run.out;
}

TEST_F(Ring, NoteOfAnAppend_IsShown) {
    PutRing(RingBytes(0, {0}));
    WriteFile(m_device / "App" / "Log.dat.redo", NoteBytes(60));
    EXPECT_EQ(Json("ring").at("note"), "waiting");
}

TEST_F(Ring, SavedRecording_IsCalledSo) {
    const std::string log = File("log.nmea", Run("simulate", {"--duration", "5m"}).out);
    ASSERT_EQ(Run("record", {log, "--no-save"}).exitCode, 0);
    EXPECT_EQ(Json("ring").at("saved"), false);
    ASSERT_EQ(Run("save").exitCode, 0);
    EXPECT_EQ(Json("ring").at("saved"), true);
    EXPECT_TRUE(Contains(Run("ring").out, "  saved     all of it\n")) << Run("ring").out;
    fs::resize_file(m_device / "App" / "Log.dat", 4 + 48);
    EXPECT_EQ(Json("ring").at("saved"), false);
}

TEST_F(Ring, NoRecording_IsCode1) {
    const ProcessResult run = Run("ring");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "there is no recording")) << run.err;
}

TEST_F(Ring, UnreadableFile_IsNamedWithTheReason) {
    fs::create_directory(m_device / "App" / "Log.dat");
    const ProcessResult run = Run("ring");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "Is a directory")) << run.err;
}

TEST_F(Ring, WrongUsage_IsCode2) { EXPECT_EQ(Run("ring", {"--no-such-option"}).exitCode, 2); }

TEST_F(Ring, OutputThatCannotBeWritten_IsCode1) {
    PutRing(RingBytes(0, {0}));
    EXPECT_EQ(RunInto("/dev/full", "ring").exitCode, 1);
}

TEST_F(Ring, RunningRecorder_IsNamedAndNotDisturbed) {
    Process recorder(Command("record", {"-", "--no-save", "--write-after", "3600"}));
    recorder.Write(Run("simulate", {"--duration", "5m"}).out);
    nlohmann::json json;
    for (int i = 0; i < 500 && !(json.is_object() && json.at("good") == 240); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        if (fs::exists(m_device / "App" / "Log.dat")) json = Json("ring");
    }
    EXPECT_EQ(json.at("good"), 240);  // four batches of 60
    EXPECT_TRUE(json.at("recorder").is_string());
    EXPECT_EQ(Run("check").exitCode, 0);
    EXPECT_EQ(recorder.Wait().exitCode, 0);
    EXPECT_TRUE(Json("ring").at("recorder").is_null());
    EXPECT_EQ(Json("ring").at("good"), 293);  // 294 fixes, of which the last opens a run that does not end
}

TEST_F(SalvageCommand, DamagedRing_BecomesAGpxFileWithoutTheLostRecord) {
    std::string bytes = RingBytes(0, UpTo(10));
    bytes[100] ^= 1;
    bytes.insert(300, "and some bytes too many");
    const std::string file = File("Log.dat", bytes);
    const ProcessResult run = Run("salvage", {file, "-o", Path("out.gpx")});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(GpxPointsOf(Path("out.gpx")).size(), 8u);
    EXPECT_TRUE(Contains(run.out, "Log.dat: 8 records in 507 bytes\n  offset 4: 2 records\n")) << run.out;
    EXPECT_EQ(ReadFile(file), bytes);
}

TEST_F(SalvageCommand, SeveralFiles_GiveEachPointOnce) {
    const std::string ring = File("Log.dat", RingBytes(0, {0, 1, 2})),
                      backup = File("a.bk", RingBytes(0, {2, 3}));
    const ProcessResult run = Run("salvage", {ring, backup, "-o", "-"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.starts_with("<?xml")) << run.out;
    EXPECT_TRUE(Contains(run.err, "points    4\n  repeated  1\n")) << run.err;
}

// A trip with a gap of half an hour comes in two segments, and the library takes it back.
TEST_F(SalvageCommand, SalvagedFile_IsImportedWithAllItsPoints) {
    const std::string ring = File("Log.dat", RingBytes(0, {0, 1, 2000, 2001}));
    ASSERT_EQ(Run("salvage", {ring, "-o", Path("out.gpx")}).exitCode, 0);
    const ProcessResult run = Run("import", {Path("out.gpx")});
    EXPECT_TRUE(Contains(run.out, "imported  Salvaged, 4 points, 2 segments joined")) << run.out << run.err;
}

TEST_F(SalvageCommand, NothingLeft_IsCode1AndWritesNothing) {
    const ProcessResult run = Run("salvage", {File("junk", std::string(5000, 'x')), "-o", Path("out.gpx")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Contains(run.err, "no valid record")) << run.err;
    EXPECT_EQ(Documents(), std::vector<std::string>{"junk"});
}

TEST_F(SalvageCommand, ExistingFile_IsReplacedByForceOnly) {
    const std::string ring = File("Log.dat", RingBytes(0, {0})), out = File("out.gpx", "precious");
    EXPECT_EQ(Run("salvage", {ring, "-o", out}).exitCode, 1);
    EXPECT_EQ(ReadFile(out), "precious");
    EXPECT_EQ(Run("salvage", {ring, "-o", out, "--force"}).exitCode, 0);
    EXPECT_EQ(GpxPointsOf(out).size(), 1u);
}

TEST_F(SalvageCommand, WrongUsageAndBadInput_AreToldApart) {
    EXPECT_EQ(Run("salvage", {File("Log.dat", "")}).exitCode, 2);
    EXPECT_EQ(Run("salvage", {"-o", Path("out.gpx")}).exitCode, 2);
    const ProcessResult missing = Run("salvage", {Path("none"), "-o", Path("out.gpx")});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(Contains(missing.err, "No such file")) << missing.err;
    EXPECT_EQ(Run("salvage", {File("Log.dat", RingBytes(0, {0})), "-o", "/dev/full"}).exitCode, 1);
}

}  // namespace
}  // namespace host
