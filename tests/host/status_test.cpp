// The line that a recording shows while it runs.
#include "host/recording/status.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(Status, LiveFix_ShowsWhatTheDriveIsLike) {
    Status status;
    status.time = 1'715'501'707;
    status.hasFix = true;
    status.speed = 12.5;
    status.distance = 1240;
    status.points = 98;
    status.slices = 1;
    status.fill = 0.0098;
    EXPECT_EQ(LiveText(status), "08:15:07 UTC  fix  45 km/h  1.24 km  98 points  1 slice  ring 1.0 %");
}

// Every second or so would only be restless.
TEST(Status, LastPointLongAgo_IsTold) {
    Status status;
    status.behind = 9;
    EXPECT_EQ(LiveText(status).find("behind"), std::string::npos);
    status.behind = 10;
    EXPECT_NE(LiveText(status).find("  0 points, 10 s behind  0 slices"), std::string::npos)
        << LiveText(status);
}

TEST(Status, NoFix_ShowsNoSpeed) {
    Status status;
    status.speed = 12.5;
    EXPECT_EQ(LiveText(status), "--:--:-- UTC  no fix  0 km/h  0 m  0 points  0 slices  ring 0.0 %");
}

TEST(Status, File_ShowsShareRateAndTimeLeft) {
    Status status;
    status.share = 0.25;
    status.fixes = 5000;
    status.points = 4000;
    EXPECT_EQ(FileText(status, 10), "[#####...............]  25 %  500 fixes/s  0:30 left  4000 points");
    EXPECT_EQ(FileText(status, 2000), "[#####...............]  25 %  2.5 fixes/s  1:40:00 left  4000 points");
}

TEST(Status, FileAtItsBeginning_DoesNotGuess) {
    EXPECT_EQ(FileText({}, 0), "[....................]  0 %  0.0 fixes/s  0 points");
}

TEST(Status, Width_CutsTheLine) {
    EXPECT_EQ(CutToWidth("[####]  20 %", 8), "[####]  ");
    EXPECT_EQ(CutToWidth("[####]", 8), "[####]");
}

}  // namespace
}  // namespace host
