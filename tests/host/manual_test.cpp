// The manual page, compared with what --help says, and `qtrace help`.
#include <regex>
#include <set>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"

namespace host {
namespace {

ProcessResult Qtrace(std::vector<std::string> arguments, const ProcessOptions& options = {}) {
    arguments.insert(arguments.begin(), QTRACE_PROGRAM);
    return RunProcess(arguments, options);
}

// As the reader sees it: hyphens without their escapes, words without their fonts.
std::string Readable(const std::string& roff) {
    return std::regex_replace(std::regex_replace(roff, std::regex(R"(\\-)"), "-"), std::regex(R"(\\f[BIR])"),
                              "");
}

std::string Manual() { return Readable(Qtrace({"print-manual"}).out); }

std::set<std::string> AllMatches(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        found.insert((*match)[1].str());
    return found;
}

std::set<std::string> CommandsInHelp() {
    const std::string help = Qtrace({"--help"}).out;
    return AllMatches(help.substr(help.find("Subcommands:")), R"(\n  ([a-z]+) )");
}

TEST(Manual, EveryCommand_HasItsPart) {
    const std::string manual = Manual();
    ASSERT_FALSE(CommandsInHelp().empty());
    for (const std::string& command : CommandsInHelp())
        EXPECT_TRUE(std::regex_search(manual, std::regex("\n\\.SS qtrace " + command + "[ \n]"))) << command;
}

TEST(Manual, EveryOption_StandsWithItsCommand) {
    const std::string manual = Manual();
    for (const std::string& command : CommandsInHelp()) {
        const std::size_t begin = manual.find("\n.SS qtrace " + command);
        ASSERT_NE(begin, std::string::npos) << command;
        const std::string part = manual.substr(begin, manual.find("\n.S", begin + 1) - begin);
        for (const std::string& option : AllMatches(Qtrace({command, "--help"}).out, "\n  (?:-.,)?(--[a-z-]+)"))
            EXPECT_TRUE(option == "--help" || part.find(option) != std::string::npos)
                << command << ' ' << option;
    }
}

TEST(Manual, SettingsOfEveryCommand_AreThere) {
    const std::string manual = Manual();
    const std::string options = manual.substr(manual.find(".SH OPTIONS"), manual.find(".SH CONFIGURATION"));
    const auto inHelp = AllMatches(Qtrace({"--help"}).out, "\n  (?:-.,)?(--[a-z-]+)");
    EXPECT_GE(inHelp.size(), 8u);
    for (const std::string& option : inHelp) EXPECT_NE(options.find(option), std::string::npos) << option;
}

TEST(Manual, HiddenCommands_AreNotThere) {
    EXPECT_EQ(Manual().find("print-"), std::string::npos);
    EXPECT_EQ(Qtrace({"--help"}).out.find("print-"), std::string::npos);
}

TEST(Manual, OtherMachine_SameText) {
    ProcessOptions elsewhere;
    elsewhere.environment = {{"HOME", "/somewhere/else"},
                             {"QTRACE_DEVICE", ""},
                             {"XDG_DATA_HOME", ""},
                             {"XDG_CONFIG_HOME", "/another/place"},
                             {"QTRACE_CONFIG", ""},
                             {"TZ", "Asia/Kathmandu"},
                             {"COLUMNS", "40"}};
    ProcessOptions here;
    here.environment = {{"QTRACE_DEVICE", "/a/device"}, {"QTRACE_CONFIG", "/dev/null"}};
    const std::string manual = Qtrace({"print-manual"}, here).out;
    EXPECT_EQ(Qtrace({"print-manual"}, elsewhere).out, manual);
    EXPECT_NE(manual.find("$XDG_DATA_HOME/qtrace"), std::string::npos);
}

TEST(Manual, Typesetter_HasNoWarning) {
    TemporaryFolder folder;
    WriteFile(folder.Path() / "qtrace.1", Qtrace({"print-manual"}).out);
    const ProcessResult set =
        RunProcess({"groff", "-man", "-ww", "-z", "-Tutf8", (folder.Path() / "qtrace.1").string()});
    if (set.exitCode == 127) GTEST_SKIP() << "groff is not here";
    EXPECT_EQ(set.exitCode, 0);
    EXPECT_EQ(set.err, "");
    const ProcessResult shown = RunProcess({"man", "--warnings", "-l", (folder.Path() / "qtrace.1").string()});
    if (shown.exitCode == 127) GTEST_SKIP() << "man is not here";
    EXPECT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_EQ(shown.err, "");
}

class ManualExample : public Recorder {};

TEST_F(ManualExample, Configuration_IsUnderstood) {
    const std::string manual = Manual();
    const std::size_t begin = manual.find(".RS\n", manual.find(".SH CONFIGURATION")) + 4;
    const std::filesystem::path file = m_folder.Path() / "config.toml";
    WriteFile(file, manual.substr(begin, manual.find(".RE", begin) - begin));
    const ProcessResult run = Record({"--config", file.string(), Log(SampleDrive())});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("every 10 m"), std::string::npos) << run.out;
}

TEST(Help, OfACommand_IsThatOfItsHelpOption) {
    for (const std::string& command : CommandsInHelp())
        EXPECT_EQ(Qtrace({"help", command}).out, Qtrace({command, "--help"}).out);
    EXPECT_EQ(Qtrace({"help"}).out, Qtrace({"--help"}).out);
}

TEST(Help, OfAnUnknownCommand_IsCode2) {
    const ProcessResult run = Qtrace({"help", "fly"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("no such command fly"), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
}

}  // namespace
}  // namespace host
