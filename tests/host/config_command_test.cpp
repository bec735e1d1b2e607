// `qtrace config`, and what a configuration file does to the other commands.
#include <gtest/gtest.h>

#include "host/settings/configuration_text.h"
#include "tests/host/library_program.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class ConfigCommand : public LibraryProgram {
 protected:
    void Configure(const std::string& text) const {
        fs::create_directories(Configuration().parent_path());
        WriteFile(Configuration(), text);
    }
    std::string Value(const std::string& key) const { return Json({"config"})[key]["value"]; }
    std::string From(const std::string& key) const { return Json({"config"})[key]["from"]; }
};

TEST_F(ConfigCommand, All_AreThereWithTheirDefaults) {
    const auto json = Json({"config"});
    for (const char* key : {"device", "tracks", "card", "card-tracks", "storage", "color", "code-page",
                            "record.mode", "record.distance", "record.time", "record.overwrite"}) {
        ASSERT_TRUE(json.contains(key)) << key;
        // the fixture names its device in the environment
        EXPECT_EQ(json[key]["from"], std::string_view(key) == "device" ? "environment" : "default") << key;
    }
    EXPECT_EQ(json["code-page"]["value"], "65001");
    EXPECT_EQ(json["record.overwrite"]["value"], "true");
    EXPECT_EQ(json["card"]["value"], "false");
    EXPECT_FALSE(json.contains("delete.yes"));
    EXPECT_FALSE(json.contains("config"));
    EXPECT_TRUE(Contains(Run({"config"}).out, "record.mode"));
}

TEST_F(ConfigCommand, DeviceInTheEnvironment_GoesBeforeTheFile) {
    const std::string before = Value("device");
    ASSERT_EQ(Run({"config", "device", "/tmp/elsewhere"}).exitCode, 0);
    EXPECT_EQ(Value("device"), before);
    EXPECT_EQ(From("device"), "environment");
}

TEST_F(ConfigCommand, Set_MakesTheFileWithItsFolders) {
    EXPECT_EQ(Run({"config", "color", "ff8000"}).exitCode, 0);
    EXPECT_EQ(ReadFile(Configuration()), "color = \"ff8000\"\n");
    EXPECT_EQ(Run({"config", "color"}).out, "ff8000\n");
    EXPECT_EQ(From("color"), "file");
    EXPECT_EQ(Run({"config", "--path"}).out, Configuration().string() + '\n');
}

TEST_F(ConfigCommand, RelativeDevice_IsStoredAbsolute) {
    const ProcessResult run = RunInShell("cd '" + m_folder.Path().string() + "' && exec \"$@\"",
                                         {"config", "device", "./mine/../gps"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(ReadFile(Configuration()),
              "device = \"" + (fs::canonical(m_folder.Path()) / "gps").string() + "\"\n");
    EXPECT_EQ(Run({"config", "device", ""}).exitCode, 2);
}

TEST_F(ConfigCommand, EverySetting_CanBeSetAndIsReadBack) {
    const std::vector<std::pair<std::string, std::string>> values = {{"tracks", "My # \"Tracks\", all"},
                                                                     {"card", "true"},
                                                                     {"card-tracks", "C/T"},
                                                                     {"storage", "card"},
                                                                     {"color", "#123456"},
                                                                     {"code-page", "1252"},
                                                                     {"record.mode", "distance"},
                                                                     {"record.distance", "10"},
                                                                     {"record.time", "5"},
                                                                     {"record.overwrite", "false"}};
    for (const auto& [key, value] : values) ASSERT_EQ(Run({"config", key, value}).exitCode, 0) << key;
    for (const auto& [key, value] : values) EXPECT_EQ(Value(key), value) << key;
}

TEST_F(ConfigCommand, Set_KeepsCommentsAndOtherLines) {
    Configure("# mine\ncolor = 00ff00 # green\n\n[record]\nmode = \"time\"\n# end\n");
    for (const auto& [key, value] : {std::pair{"color", "ff0000"}, {"record.time", "7"}, {"tracks", "T"}})
        ASSERT_EQ(Run({"config", key, value}).exitCode, 0) << key;
    EXPECT_EQ(
        ReadFile(Configuration()),
        "# mine\ncolor = \"ff0000\" # green\n\ntracks = \"T\"\n[record]\nmode = \"time\"\ntime = 7\n# end\n");
}

TEST_F(ConfigCommand, Unset_GoesBackToTheDefault) {
    Configure("# mine\ncolor = 00ff00\n[record]\nmode = time\n");
    EXPECT_EQ(Run({"config", "--unset", "record.mode"}).exitCode, 0);
    EXPECT_EQ(ReadFile(Configuration()), "# mine\ncolor = 00ff00\n[record]\n");
    EXPECT_EQ(Run({"config", "--unset", "record.mode"}).exitCode, 1);
    EXPECT_EQ(Run({"config", "--unset"}).exitCode, 2);
}

TEST_F(ConfigCommand, BadValueOrKey_IsCode2AndWritesNothing) {
    for (const auto& [key, value] : std::vector<std::pair<std::string, std::string>>{{"color", "red"},
                                                                                     {"code-page", "12345"},
                                                                                     {"record.mode", "never"},
                                                                                     {"record.time", "0"},
                                                                                     {"card", "maybe"},
                                                                                     {"tracks", "../x"},
                                                                                     {"colour", "ff0000"},
                                                                                     {"config", "x"},
                                                                                     {"delete.yes", "true"},
                                                                                     {"tracks", "a\nb"}})
        EXPECT_EQ(Run({"config", key, value}).exitCode, 2) << key << value;
    EXPECT_FALSE(fs::exists(Configuration()));
    EXPECT_EQ(Run({"config", "colour"}).exitCode, 2);
}

TEST_F(ConfigCommand, Settings_HoldForTheCommandsUnlessTheLineSaysOtherwise) {
    Configure("tracks = \"Elsewhere/Mine\"  # not the usual place\n");
    EXPECT_TRUE(Contains(Run({"list"}).err, "Elsewhere/Mine"));
    EXPECT_TRUE(Contains(Run({"list", "--tracks", "Third"}).err, "Third"));
    EXPECT_EQ(Run({"--tracks", "Third", "config", "tracks"}).out, "Third\n");
}

TEST_F(ConfigCommand, DamagedFile_IsNamedWithItsLineByEveryCommand) {
    AddTrack("Lake");
    const std::vector<std::pair<std::string, std::string>> damaged = {
        {"\n\ncolour = 1\n", ":3: colour is no setting"},
        {"color = red\n", ":1: color: red is no color"},
        {"[record]\nmode\n", ":2: this is no line like key = value"},
        {"[record]\ntime = soon\n", ":2: record.time: "},
        {"card = maybe\n", ":1: card: maybe is neither true nor false"},
        {"color = \"00ff00\n", ":1: the quote is not closed"},
        {"[record\n", ":1: this is no section"},
        {"color =\n", ":1: there is no value"},
        {"color = 00ff00\ncolor = 00ff00\n", ":2: color is set in line 1 already"},
        {std::string("a\0b\n", 4), ":1: there are bytes in it that are no text"}};
    for (const auto& [text, message] : damaged) {
        Configure(text);
        for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
                 {"list"}, {"config"}, {"config", "color", "ff0000"}, {"delete", "Lake", "--yes"}}) {
            const ProcessResult run = Run(command);
            EXPECT_EQ(run.exitCode, 2) << text;
            EXPECT_TRUE(Contains(run.err, Configuration().string() + message)) << text << run.err;
        }
        EXPECT_EQ(Run({"config", "--path"}).exitCode, 0);
        EXPECT_EQ(Run({"--help"}).exitCode, 0);
        EXPECT_EQ(ReadFile(Configuration()), text);
    }
    EXPECT_TRUE(fs::exists(File("Lake")));
}

TEST_F(ConfigCommand, FileThatCannotBeRead_IsNamed) {
    Configure("color = 00ff00\n");
    fs::permissions(Configuration(), fs::perms::none);
    ProcessOptions nobody = Options();
    nobody.asNobody = true;
    const ProcessResult run = Run({"list"}, nobody);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(Contains(run.err, "Permission denied")) << run.err;
    fs::remove(Configuration());
    fs::create_directory(Configuration());
    EXPECT_EQ(Run({"list"}).exitCode, 2);
}

TEST_F(ConfigCommand, NoRoomOrNoRights_LeaveTheFileAsItWas) {
    const std::string text = "# " + std::string(600, 'x') + "\ncolor = 00ff00\n";
    Configure(text);
    const ProcessResult noRoom = Run({"config", "color", "ff0000"}, WithoutRoom());
    EXPECT_EQ(noRoom.exitCode, 1);
    EXPECT_TRUE(Contains(noRoom.err, "File too large")) << noRoom.err;
    fs::permissions(Configuration().parent_path(), fs::perms(0555));
    ProcessOptions nobody = Options();
    nobody.asNobody = true;
    EXPECT_EQ(Run({"config", "color", "ff0000"}, nobody).exitCode, 1);
    EXPECT_EQ(ReadFile(Configuration()), text);
    EXPECT_EQ(std::distance(fs::directory_iterator(Configuration().parent_path()), {}), 1);
}

TEST_F(ConfigCommand, Link_KeepsLeadingToItsFile) {
    Configure("");
    const fs::path real = m_folder.Path() / "real.toml";
    fs::rename(Configuration(), real);
    fs::create_symlink(real, Configuration());
    EXPECT_EQ(Run({"config", "color", "ff0000"}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(Configuration()));
    EXPECT_EQ(ReadFile(real), "color = \"ff0000\"\n");
}

TEST(ConfigurationText, NewKey_GoesIntoItsSection) {
    ConfigurationText text("[record]\n# none\n[list]\nsort = name\n");
    text.Set("record.mode", "\"time\"");
    text.Set("color", "\"00ff00\"");
    text.Set("split.gap", "\"5m\"");
    EXPECT_EQ(
        text.Text(),
        "color = \"00ff00\"\nsplit.gap = \"5m\"\n[record]\nmode = \"time\"\n# none\n[list]\nsort = name\n");
}

TEST(ConfigurationText, Value_IsFoundWithinItsLine) {
    const ConfigurationLine line = ReadConfigurationLine("  color\t= \"a # b\"  # note\r");
    EXPECT_EQ(line.kind, ConfigurationLine::Kind::Value);
    EXPECT_EQ(line.name, "color");
    EXPECT_EQ(line.value, "a # b");
    EXPECT_EQ(ReadConfigurationLine("k = 'C:\\x'").value, "C:\\x");
    EXPECT_EQ(ReadConfigurationLine("k = a b").value, "a b");
}

TEST(ConfigurationText, Quotes_AreChosenSoThatTomlReadsTheSame) {
    EXPECT_EQ(QuotedValue("12"), "12");
    EXPECT_EQ(QuotedValue("012"), "\"012\"");
    EXPECT_EQ(QuotedValue("true"), "true");
    EXPECT_EQ(QuotedValue("a b"), "\"a b\"");
    EXPECT_EQ(QuotedValue("a\\b"), "'a\\b'");
    EXPECT_FALSE(QuotedValue("a\"b'c"));
    EXPECT_FALSE(QuotedValue("a\nb"));
}

}  // namespace
}  // namespace host
