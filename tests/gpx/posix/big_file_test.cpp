// A large document of another program. It is kept packed, and unpacked by this machine's gzip.
#include "tests/gpx/recorded_gpx.h"
#include "tests/support/process.h"

TEST_F(RecordedGpx, BigFile_IsReadWhole) {
    const auto packed = RecordedFile("gpx", "derived-big.gpx.gz");
    ASSERT_TRUE(packed);
    const ProcessResult unpacked = RunProcess({"gzip", "-dc", packed->string()});
    if (unpacked.exitCode != 0) GTEST_SKIP() << "no gzip here";
    Imported imported;
    EXPECT_TRUE(Import(unpacked.out, imported));
    EXPECT_EQ(imported.points.size(), 23403u);
    EXPECT_EQ(PositionsOf(imported.points), PositionsOf(unpacked.out));
}
