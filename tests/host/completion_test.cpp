// The completion as bash calls it: the installed file, the system's helpers, the real program.
#include <sstream>

#include <gtest/gtest.h>
#include <CLI/CLI.hpp>

#include "host/settings/completion.h"
#include "tests/host/recorder.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// Prints what _qtrace proposes for the words given; the last one is being typed.
const char* const kAsk = R"(
. /usr/share/bash-completion/bash_completion || exit 99
. "$1"
compopt() { printf 'compopt %s\n' "$*" >&2; }
shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMP_TYPE=9
COMP_LINE=${COMP_LINE// = /=}
COMP_POINT=${#COMP_LINE}
_qtrace "$1" "${!#}" "${COMP_WORDS[COMP_CWORD - 1]}"
((${#COMPREPLY[@]})) && printf '%s\n' "${COMPREPLY[@]}"
exit 0
)";

class Completion : public Recorder {
 protected:
    void SetUp() override {
        if (!fs::exists("/usr/share/bash-completion/bash_completion"))
            GTEST_SKIP() << "bash-completion is not here";
    }
    // bash parts words at "=", and hands it over as a word of its own.
    std::vector<std::string> Proposals(std::vector<std::string> words) const {
        std::vector<std::string> command = {"bash", "--norc",          "-c",          kAsk,
                                            "bash", QTRACE_COMPLETION, QTRACE_PROGRAM};
        command.insert(command.end(), words.begin(), words.end());
        ProcessOptions options;
        options.environment = {{"QTRACE_DEVICE", m_device.string()}, {"QTRACE_CONFIG", "/dev/null"}};
        const ProcessResult run = RunProcess(command, options);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        std::vector<std::string> lines;
        std::istringstream text(run.out);
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        std::sort(lines.begin(), lines.end());
        return lines;
    }
    // A stored track of that display name.
    void Store(const std::string& file, const std::string& name) const {
        fs::create_directories(m_device / "UserData" / "Track");
        WriteFile(m_device / "UserData" / "Track" / file,
                  "<?xml version=\"1.0\"?><gpx version=\"1.0\"><trk><name>" + name +
                      "</name><trkseg><trkpt lat=\"47\" lon=\"8\"/><trkpt lat=\"47.1\" "
                      "lon=\"8\"/></trkseg></trk></gpx>");
    }
    static bool Has(const std::vector<std::string>& words, const std::string& word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    }
};
using Words = std::vector<std::string>;

// A command line of the test's own.
class CompletionTables : public ::testing::Test {
 protected:
    std::string Tables() const {
        std::ostringstream out;
        PrintCompletion(m_app, out);
        return out.str();
    }
    bool Says(const std::string& key, const std::string& text) const {
        return Tables().find("['qtrace " + key + "']='" + text + "'\n") != std::string::npos;
    }
    CLI::App m_app;
    CLI::App& m_command = *m_app.add_subcommand("go");
    std::string m_text;
    std::vector<std::string> m_list;
};

TEST_F(CompletionTables, OptionValues_AreToldByWhatTheHelpCallsThem) {
    m_command.add_option("-o,--output", m_text)->type_name("FILE");
    m_command.add_option("--speed", m_text)->type_name("N|max");
    m_command.add_option("--as", m_text)->type_name("NAME");
    m_command.add_option("--gpsd", m_text)->type_name("[HOST[:PORT]]");
    EXPECT_TRUE(Says("go -o", "@file")) << Tables();
    EXPECT_TRUE(Says("go --output", "@file"));
    EXPECT_TRUE(Says("go --speed", "max"));
    EXPECT_TRUE(Says("go --as", "@text"));
    EXPECT_TRUE(Says("go --gpsd", "@text"));
}

TEST_F(CompletionTables, Arguments_HaveTheirPlaces) {
    m_command.add_option("NAME", m_text);
    m_command.add_option("FILE", m_list)->type_name("FILE...");
    EXPECT_TRUE(Says("go 1", "@track")) << Tables();
    EXPECT_TRUE(Says("go ...", "@file"));
}

TEST_F(CompletionTables, TracksAndThenAFile_AreBoth) {
    m_command.add_option("NAME", m_list)->type_name("NAME... FILE");
    EXPECT_TRUE(Says("go ...", "@track @file")) << Tables();
}

TEST_F(CompletionTables, CommandsOfACommand_AreListed) {
    m_command.add_subcommand("set")->add_flag("--all");
    m_command.add_subcommand("hidden")->group("");
    EXPECT_TRUE(Says("go", "set")) << Tables();
    EXPECT_TRUE(Says("go set", "--help --all"));
    EXPECT_EQ(Tables().find("hidden"), std::string::npos);
}

TEST_F(CompletionTables, OptionsOfAGroup_AreTheCommands) {
    m_command.add_option_group("Source")->add_option("--baud", m_text)->type_name("RATE");
    EXPECT_TRUE(Says("go", "--help --baud")) << Tables();
}

TEST_F(Completion, FirstWord_IsACommand) {
    EXPECT_EQ(Proposals({"rec"}), Words{"record"});
    EXPECT_EQ(Proposals({"--device", "x", "rec"}), Words{"record"});
    EXPECT_TRUE(Has(Proposals({""}), "list"));
    EXPECT_FALSE(Has(Proposals({""}), "print-manual"));
}

TEST_F(Completion, Help_TakesACommand) { EXPECT_EQ(Proposals({"help", "rec"}), Words{"record"}); }

TEST_F(Completion, Dash_GivesTheOptionsOfTheCommandAndTheSettings) {
    EXPECT_EQ(Proposals({"record", "--mo"}), Words{"--mode"});
    EXPECT_EQ(Proposals({"record", "--code"}), Words{"--code-page"});
    EXPECT_TRUE(Proposals({"list", "--mo"}).empty());
}

TEST_F(Completion, Choice_GivesItsWords) {
    EXPECT_EQ(Proposals({"record", "--mode", ""}), (Words{"auto", "distance", "time"}));
    EXPECT_EQ(Proposals({"record", "--mode", "=", "ti"}), Words{"time"});
    EXPECT_EQ(Proposals({"list", "--storage", "c"}), Words{"card"});
}

TEST_F(Completion, ArgumentFile_GivesFilesAlsoBehindOptions) {
    const std::string log = Log("");
    const std::string begin = log.substr(0, log.size() - 4);
    EXPECT_EQ(Proposals({"record", begin}), Words{log});
    EXPECT_EQ(Proposals({"record", "--time", "5", "--no-save", begin}), Words{log});
    EXPECT_EQ(Proposals({"record", "--nmea", begin}), Words{log});
    EXPECT_TRUE(Proposals({"record", log, begin}).empty());  // there is one log only
}

TEST_F(Completion, Folder_GivesFoldersOnly) {
    Log("");
    fs::create_directory(m_folder.Path() / "logs");
    EXPECT_EQ(Proposals({"--device", (m_folder.Path() / "lo").string()}),
              Words{(m_folder.Path() / "logs").string()});
}

TEST_F(Completion, Number_GivesNothing) { EXPECT_TRUE(Proposals({"record", "--time", ""}).empty()); }

// The words of the command line are never run.
TEST_F(Completion, TypedCommands_AreNotExecuted) {
    const std::string made = (m_folder.Path() / "made").string();
    Proposals(
        {"--device", "$(touch " + made + ")", "record", "--x[$(touch " + made + ")]", "`touch " + made + "`"});
    EXPECT_FALSE(fs::exists(made));
}

TEST_F(Completion, TrackNames_AreThoseOfTheLibrary) {
    Store("a.gpx", "Round the lake");
    Store("b.gpx", "M\u00fcrren");
    const ProcessResult run = RunProcess({QTRACE_PROGRAM, "print-track-names", "--device", m_device.string()});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.out.find("Round the lake\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("M\u00fcrren\n"), std::string::npos) << run.out;
}

TEST_F(Completion, TrackNamesOfNoLibrary_AreNoneAndNothingIsMade) {
    fs::create_directory(m_device);
    EXPECT_EQ(RunProcess({QTRACE_PROGRAM, "print-track-names", "--device", m_device.string()}).out, "");
    EXPECT_TRUE(fs::is_empty(m_device));
}

}  // namespace
}  // namespace host
