// TckPt: the record of 48 bytes that lies in memory and in every file alike.
#include "track/point.h"

#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/points.h"

TEST(Point, EveryField_LiesWhereTheFilesHaveIt) {
    TckPt fix{};
    fix.dLatitude = -51.477928;
    fix.dLongitude = 179.999999;
    fix.dAltitude = -0.0;
    fix.dSpeed = 27.5;
    fix.lTime = -2;
    fix.fCourse = 359.5F;
    for (unsigned char i = 0; i < 8; ++i) fix.reserved[i] = static_cast<unsigned char>(0xF0 + i);

    const std::string described = PointBytes(fix);

    ASSERT_EQ(sizeof fix, described.size());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&fix), sizeof fix), described);
}

TEST(Point, ClearedPoint_IsAllZeroBytes) {
    const TckPt fix{};
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&fix), sizeof fix), std::string(48, '\0'));
}

TEST(Point, CopiedAsBytes_KeepsEveryByte) {
    std::mt19937 random(11);
    for (int round = 0; round < 1000; ++round) {
        const TckPt fix = AnyBytes(random);
        const TckPt copy = fix;
        ASSERT_EQ(std::memcmp(&fix, &copy, sizeof fix), 0) << "seed 11, round " << round;
    }
}
