// The picture in the README is what the program draws.
#include <gtest/gtest.h>

#include "tests/host/recorder.h"

namespace host {
namespace {

class SamplePicture : public Recorder {};

TEST_F(SamplePicture, InTheReadme_IsWhatTheProgramDraws) {
    const std::string drive = (std::filesystem::path(QTRACE_SAMPLES) / "drive.nmea").string();
    ASSERT_EQ(Record({drive, "--save-as", "Sample drive"}).exitCode, 0);
    const ProcessResult drawn = RunProcess(
        {QTRACE_PROGRAM, "map", "--device", m_device.string(), "Sample drive", "--format", "svg", "-o", "-"});
    ASSERT_EQ(drawn.exitCode, 0) << drawn.err;
    const std::string committed = ReadFile(std::filesystem::path(QTRACE_DOCS) / "images" / "sample-drive.svg");
    EXPECT_TRUE(drawn.out == committed) << "scripts/draw-sample draws it anew";
}

}  // namespace
}  // namespace host
