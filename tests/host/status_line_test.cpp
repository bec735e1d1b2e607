// Where the status goes when standard error is no terminal. On a terminal: record_health_test.cpp.
#include "host/recording/status_line.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

// Standard error is a file here, whatever it is for whoever runs the tests.
class PlainStatusLine : public ::testing::Test {
 protected:
    PlainStatusLine() { ::testing::internal::CaptureStderr(); }
    ~PlainStatusLine() override { ::testing::internal::GetCapturedStderr(); }
    static std::string SoFar() {
        const std::string text = ::testing::internal::GetCapturedStderr();
        ::testing::internal::CaptureStderr();
        return text;
    }
};

TEST_F(PlainStatusLine, LiveSource_GetsALineEachPause) {
    StatusLine line("record", milliseconds(0));
    line.Show(true, [] { return Status{}; });
    line.Show(true, [] { return Status{}; });
    EXPECT_EQ(SoFar(), LiveText({}) + '\n' + LiveText({}) + '\n');
}

TEST_F(PlainStatusLine, BeforeThePause_IsQuiet) {
    StatusLine line("record", hours(1));
    line.Show(true, [] { return Status{}; });
    EXPECT_EQ(SoFar(), "");
}

TEST_F(PlainStatusLine, File_IsQuiet) {
    StatusLine line("record", milliseconds(0));
    line.Show(false, [] { return Status{}; });
    EXPECT_EQ(SoFar(), "");
}

TEST_F(PlainStatusLine, Message_NamesTheCommand) {
    StatusLine line("record");
    line.Say("the receiver is gone");
    EXPECT_EQ(SoFar(), "qtrace record: the receiver is gone\n");
}

TEST_F(PlainStatusLine, Message_SteersNoTerminal) {
    StatusLine line("record");
    line.Say("the receiver \033[2J\u009b is gone");
    EXPECT_EQ(SoFar(), "qtrace record: the receiver ?[2J? is gone\n");
}

}  // namespace
}  // namespace host
