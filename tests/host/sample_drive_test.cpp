#include <gtest/gtest.h>

#include "tests/host/recorder.h"

namespace host {
namespace {

TEST(SampleDrive, Generator_WritesTheSameBytesAgain) {
    const ProcessResult generator = RunProcess({QTRACE_MAKE_DRIVE});
    ASSERT_EQ(generator.exitCode, 0);
    EXPECT_TRUE(generator.out == SampleDrive()) << "make_drive > samples/drive.nmea brings them together";
}

TEST(SampleDrive, Sentences_AreAllValid) {
    NmeaReader reader([](const TckPt&) {});
    reader.Push(SampleDrive());
    reader.Finish();
    const NmeaCounts counts = reader.Counts();
    EXPECT_EQ(counts.Refused(), counts.Refused(Refusal::NoFix));
    EXPECT_EQ(counts.otherLines, 0u);
    EXPECT_EQ(counts.fixes * 2 + counts.Refused(), counts.sentences);
}

// The drive shows what a recording has to cope with.
TEST(SampleDrive, Fixes_ShowStopsATunnelAMotorwayAndARest) {
    const std::vector<TckPt> fixes = FixesIn(SampleDrive());
    int standing = 0, tunnels = 0, rests = 0;
    double fastest = 0;
    for (std::size_t i = 1; i < fixes.size(); ++i) {
        const int gap = fixes[i].lTime - fixes[i - 1].lTime;
        standing += fixes[i].dSpeed == 0.0;
        tunnels += gap > 30 && gap < 1800;
        rests += gap >= 1800;
        fastest = std::max(fastest, fixes[i].dSpeed);
    }
    EXPECT_GE(fixes.size(), 2600u);
    EXPECT_GE(standing, 200);
    EXPECT_EQ(tunnels, 2);
    EXPECT_EQ(rests, 1);
    EXPECT_GT(fastest, 30);  // [m/s]
    EXPECT_LT(fastest, 40);
}

}  // namespace
}  // namespace host
