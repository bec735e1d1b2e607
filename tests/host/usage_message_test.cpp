// What the program says of a wrong command line.
#include <gtest/gtest.h>

#include "tests/host/commands.h"

namespace host {
namespace {

std::string Said(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QTRACE_PROGRAM);
    const ProcessResult run = RunProcess(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    return run.err.substr(0, run.err.find('\n'));
}

TEST(UsageMessage, UnknownCommand_IsNamedWithTheNearest) {
    EXPECT_EQ(Said({"nosuch"}), "qtrace: no such command nosuch");
    EXPECT_EQ(Said({"lisst", "--json"}), "qtrace: no such command lisst; did you mean list?");
    EXPECT_EQ(Said({"exprot", "a", "b"}), "qtrace: no such command exprot; did you mean export?");
    EXPECT_EQ(Said({"x"}), "qtrace: no such command x");
    EXPECT_EQ(Said({"help", "mege"}), "qtrace help: no such command mege; did you mean merge?");
}

TEST(UsageMessage, UnknownOption_IsNamed) {
    EXPECT_EQ(Said({"--no-such"}), "qtrace: no such option --no-such");
    EXPECT_TRUE(Contains(Said({"list", "--no-such"}), "qtrace list: ")) << Said({"list", "--no-such"});
}

TEST(UsageMessage, EveryCommand_SaysWhoSpeaks) {
    EXPECT_EQ(Said({"export", "a"}), "qtrace export: NAME and FILE are needed: the last word is the file");
    EXPECT_TRUE(Said({"export", "a", "b.xyz"}).starts_with("qtrace export: b.xyz: no format"));
    EXPECT_EQ(Said({"points"}), "qtrace points: NAME is required");
    EXPECT_TRUE(Said({"split", "a", "--gap", "x"}).starts_with("qtrace split: --gap: x is no time"));
    EXPECT_TRUE(Said({"map", "-o", "x.doc"}).starts_with("qtrace map: --output: x.doc is neither"));
    EXPECT_TRUE(Contains(Said({}), "qtrace: ")) << Said({});
}

}  // namespace
}  // namespace host
