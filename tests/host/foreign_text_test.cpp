// Names and paths by strangers on the terminal: none of them steers it. JSON keeps what is there.
#include <gtest/gtest.h>

#include "tests/host/library_program.h"
#include "tests/host/recorder.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr const char* kTitle = "Lake\u009b2J\u202eB";  // as it is in a file
constexpr const char* kShown = "Lake?2J?B";            // as the terminal gets it

class ForeignText : public LibraryProgram {
 protected:
    // What the program says, on both streams, without a character that steers a terminal.
    std::string Said(const std::vector<std::string>& arguments) const {
        const ProcessResult run = Run(arguments);
        const std::string text = run.out + run.err;
        for (const char* control : {"\033", "\u009b", "\u202e"}) EXPECT_FALSE(Contains(text, control)) << text;
        return text;
    }
};

TEST_F(ForeignText, NameInAFile_IsShownWithoutControls) {
    WriteFile(File("a"), Gpx(kTitle, {{0, 0}, {100, 50}}));
    WriteFile(File("b"), Gpx("B", {{500, 20}, {600, 950}}));
    EXPECT_TRUE(Contains(Said({"list"}), kShown));
    EXPECT_TRUE(Contains(Said({"info", "a"}), kShown));
    EXPECT_TRUE(Contains(Said({"merge", "a", "b", "--as", "c"}), std::string("B starts before ") + kShown));
    EXPECT_TRUE(Contains(Said({"color", "a", "ff0000"}), kShown));
    EXPECT_EQ(Json({"info", "a"})["name"], kTitle);
    EXPECT_TRUE(Contains(Said({"info", "a", "--json"}), "\"Lake\\u009b2J\\u202eB\""));
}

TEST_F(ForeignText, FileName_IsShownWithoutControls) {
    const std::string name = "x\033[2J\u202ey";
    WriteFile(File(name), "no track");
    EXPECT_TRUE(Contains(Said({"list"}), "x?[2J?y.gpx is not listed"));
    EXPECT_TRUE(Contains(Said({"check"}), "x?[2J?y.gpx: "));
    EXPECT_EQ(fs::path(Json({"check"}, 1)["tracks"][0]["file"].get<std::string>()), File(name));
    AddTrack(name);
    EXPECT_TRUE(Contains(Said({"info", name}), "x?[2J?y.gpx\n"));
}

TEST_F(ForeignText, Import_SaysNamesAndFilesWithoutControls) {
    const std::string file = (m_folder.Path() / "\u009b1.gpx").string();
    WriteFile(file, Gpx(kTitle, {{0, 0}, {100, 50}}));
    const std::string said = Said({"import", file});
    EXPECT_TRUE(Contains(said, "?1.gpx\n")) << said;
    EXPECT_TRUE(Contains(said, std::string("instead of the name ") + kShown)) << said;
    EXPECT_TRUE(Contains(Said({"import", file}), "skipped   Lake?2J?B"));
    WriteFile(file, "<gpx>");
    EXPECT_TRUE(Contains(Said({"import", file}), "?1.gpx: line 1"));
}

TEST_F(ForeignText, Record_SaysNamesAndFilesWithoutControls) {
    const std::string log = (m_folder.Path() / "log\u009b.nmea").string();
    WriteFile(log, Drive(50));
    EXPECT_TRUE(
        Contains(Said({"record", "--nmea", log, "--save-as", "a/\u009b\u202eb"}), "will be named a___b"));
    EXPECT_TRUE(Contains(Said({"record", "--nmea", log, "--new"}), "log?.nmea"));
    EXPECT_TRUE(Contains(Said({"save", "--as", "c/\u009b"}), "will be named c__"));
    const std::string device = m_device.string() + "\u009b";
    Said({"record", "--nmea", log, "--device", device, "--no-save"});
    EXPECT_TRUE(Contains(Said({"record", "--nmea", log, "--device", device, "--new"}), "is saved as "));
}

TEST_F(ForeignText, NamesOnTheCommandLine_AreSaidWithoutControls) {
    EXPECT_TRUE(Contains(Said({"info", "a\033b"}), "no track named a?b"));
    EXPECT_TRUE(Contains(Said({"color", "a", "red\033[2J"}), "red?[2J is no color"));
    EXPECT_TRUE(Contains(Said({"import", "\u009b"}), "?: No such file"));
    EXPECT_TRUE(Contains(Said({"config", "\u009b"}), "? is no setting"));
    EXPECT_TRUE(Contains(Said({"export", "a", "x.\033"}), "x.?"));
}

}  // namespace
}  // namespace host
