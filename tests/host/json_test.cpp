// The shape of the JSON that the commands share.
#include "host/text/json.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(Json, Time_IsInUtcAndZeroIsNull) {
    EXPECT_EQ(IsoTime(1715501706), Json("2024-05-12T08:15:06Z"));
    EXPECT_EQ(IsoTime(-1), Json("1969-12-31T23:59:59Z"));
    EXPECT_TRUE(IsoTime(0).is_null());
    EXPECT_TRUE(IsoTime(std::nullopt).is_null());
}

TEST(Json, Point_KnowsNoAltitudeOfPlusZero) {
    TckPt point{47.5, 8.25, 0.0, 3.5, 1715501706, 90.0f, {}};
    EXPECT_EQ(PointJson(point, false).dump(),
              R"({"latitude":47.5,"longitude":8.25,"altitude":null,"time":"2024-05-12T08:15:06Z"})");
    point.dAltitude = -0.0;  // measured
    EXPECT_EQ(PointJson(point, false)["altitude"].dump(), "0.0");
    point.dAltitude = 400;
    const Json json = PointJson(point, true);
    EXPECT_EQ(json["altitude"], 400.0);
    EXPECT_EQ(json["speed"], 3.5);
    EXPECT_EQ(json["course"], 90.0);
}

TEST(Json, StatisticsOfNothing_AreNullWhereNothingIsKnown) {
    const Json json = StatisticsJson(ComputeStatistics({}));
    EXPECT_EQ(json["points"], 0);
    EXPECT_EQ(json["length"], 0.0);
    for (const char* key :
         {"start", "end", "duration", "moving_time", "stopped_time", "unrecorded_time", "average_speed",
          "moving_speed", "greatest_speed", "ascent", "descent", "lowest", "highest", "bounds"})
        EXPECT_TRUE(json.at(key).is_null()) << key;
}

TEST(Json, Statistics_AreInMetresSecondsAndDegrees) {
    const Json json = StatisticsJson(ComputeStatistics(
        {TckPt{0, 179.5, 10, 0, 1715501706, 0, {}}, TckPt{0, -179.5, 30, 0, 1715502706, 0, {}}}));
    EXPECT_NEAR(json["length"].get<double>(), 111120, 1e-3);
    EXPECT_EQ(json["duration"], 1000);
    EXPECT_EQ(json["moving_time"], 1000);
    EXPECT_NEAR(json["average_speed"].get<double>(), 111.12, 1e-6);
    EXPECT_EQ(json["ascent"], 20.0);
    EXPECT_EQ(json["bounds"]["west"], 179.5);
    EXPECT_EQ(json["bounds"]["east"], -179.5);
    EXPECT_EQ(json["computed_from"], "2 points; speeds from positions and times");
}

}  // namespace
}  // namespace host
