// Tracks as GPX, GeoJSON, KML and CSV: host/tracks/track_document.h.
#include "host/tracks/track_document.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "host/tracks/gpx_reader.h"
#include "tests/host/commands.h"
#include "tests/support/points.h"

namespace host {
namespace {

TckPt Fix(double latitude, double longitude, double altitude, std::int32_t time, double speed, float course) {
    TckPt fix = At(latitude, longitude, time);
    fix.dAltitude = altitude;
    fix.dSpeed = speed;
    fix.fCourse = course;
    return fix;
}

DocumentTrack Track(std::vector<Segment> segments, const std::string& name = "A") {
    return {name, 0x302010, std::move(segments)};
}

template <typename Write>
std::string Text(Write write, const std::vector<DocumentTrack>& tracks) {
    std::string text;
    write(tracks, [&](std::string_view piece) {
        text += piece;
        return true;
    });
    return text;
}

nlohmann::json GeoJson(const DocumentTrack& track) {
    return nlohmann::json::parse(Text(WriteGeoJson, {track})).at("features").at(0);
}

std::vector<GpxTrack> ReadBack(const std::string& gpx) {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "a.gpx", gpx);
    FileReader file((folder.Path() / "a.gpx").string());
    std::vector<GpxTrack> tracks;
    ReadGpx(file, [&](const GpxTrack& track) { tracks.push_back(track); });
    return tracks;
}

TEST(TrackDocument, GpxPoints_ReadBackExactly) {
    const Segment points = {Fix(47.123456789012345, -8.1, 432.5, 1000000000, 3.3, 90.25f),
                            Fix(-0.1, 180, -0.0, 1000000001, 0.1, 0)};
    const std::string gpx = Text(WriteGpx, {Track({{points[0]}, {points[1]}})});
    const auto tracks = ReadBack(gpx);
    ASSERT_EQ(tracks.size(), 1u);
    EXPECT_EQ(tracks[0].points, points);
    EXPECT_EQ(tracks[0].segments, 2u);
    EXPECT_EQ(tracks[0].color, 0x302010ul);
}

TEST(TrackDocument, Gpx11_HasSpeedAndCourseInExtensionsOnly) {
    const std::string gpx = Text(WriteGpx, {Track({{Fix(1, 2, 0, 0, 3, 4)}})});
    EXPECT_TRUE(Contains(gpx,
                         "<trkpt lat=\"1\" lon=\"2\"><extensions><gpxtpx:TrackPointExtension>"
                         "<gpxtpx:speed>3</gpxtpx:speed><gpxtpx:course>4</gpxtpx:course>"))
        << gpx;
}

TEST(TrackDocument, WhatIsNotKnown_IsLeftOut) {
    EXPECT_TRUE(
        Contains(Text(WriteGpx, {Track({{Fix(1, 2, 0, 0, 0, 0)}})}), "<trkpt lat=\"1\" lon=\"2\"></trkpt>"));
    EXPECT_TRUE(Contains(Text(WriteCsv, {Track({{Fix(1, 2, 0, 0, 0, 0)}})}), "\"A\",1,1,2,,,,\n"));
}

TEST(TrackDocument, Names_AreEscapedInEveryFormat) {
    const std::string name = "<A> & \"B\",\x01\n'C'";
    const std::vector<DocumentTrack> tracks = {Track({{At(1, 2), At(1, 3)}}, name)};
    EXPECT_TRUE(
        Contains(Text(WriteGpx, tracks), "<name>&lt;A&gt; &amp; &quot;B&quot;,\ufffd\n&#39;C&#39;</name>"));
    EXPECT_TRUE(
        Contains(Text(WriteKml, tracks), "<name>&lt;A&gt; &amp; &quot;B&quot;,\ufffd\n&#39;C&#39;</name>"));
    EXPECT_TRUE(Contains(Text(WriteCsv, tracks), "\"<A> & \"\"B\"\",\x01\n'C'\",1,1,2,"));
    EXPECT_EQ(GeoJson(tracks[0]).at("properties").at("name"), name);
}

TEST(TrackDocument, GeoJsonLine_HasLongitudeFirstAndItsTimes) {
    const auto feature = GeoJson(Track({{Fix(47.5, 8.25, 400, 1000000000, 1, 0), Fix(48, 9, 410, 0, 1, 0)}}));
    EXPECT_EQ(feature.at("geometry"), nlohmann::json::parse(R"({"type":"LineString",
        "coordinates":[[8.25,47.5,400],[9,48,410]]})"));
    EXPECT_EQ(feature.at("properties").at("coordTimes"),
              nlohmann::json::parse(R"(["2001-09-09T01:46:40Z",null])"));
    EXPECT_EQ(feature.at("properties").at("stroke"), "#102030");
}

TEST(TrackDocument, GeoJsonAcrossThe180thMeridian_IsCutThere) {
    const auto feature =
        GeoJson(Track({{Fix(10, 179, 0, 100, 1, 0), Fix(12, -179, 0, 200, 1, 0), Fix(10, 178, 0, 300, 1, 0)}}));
    EXPECT_EQ(feature.at("geometry"), nlohmann::json::parse(R"({"type":"MultiLineString","coordinates":
        [[[179,10],[180,11]],[[-180,11],[-179,12],[-180,11.333333333333334]],[[180,11.333333333333334],[178,10]]]})"));
    EXPECT_EQ(feature.at("properties").at("coordTimes").at(0).at(1), "1970-01-01T00:02:30Z");
}

TEST(TrackDocument, GeoJsonWithoutALine_IsAPointOrNothing) {
    EXPECT_EQ(GeoJson(Track({{At(1, 2)}})).at("geometry"),
              nlohmann::json::parse(R"({"type":"Point","coordinates":[2,1]})"));
    EXPECT_TRUE(GeoJson(Track({})).at("geometry").is_null());
}

TEST(TrackDocument, Kml_HasAColorOfAlphaBlueGreenRed) {
    EXPECT_TRUE(Contains(Text(WriteKml, {Track({{At(1, 2)}})}), "<color>ff302010</color>"));
}

TEST(TrackDocument, Kml_IsATrackInTimeOrALine) {
    const Segment fixes = {Fix(1, 2, 3, 1000000000, 0, 0), Fix(1, 3, 0, 1000000001, 0, 0)};
    const std::string inTime = Text(WriteKml, {Track({fixes})});
    EXPECT_TRUE(Contains(inTime, "<when>2001-09-09T01:46:41Z</when>\n<gx:coord>2 1 3</gx:coord>")) << inTime;
    const std::string line = Text(WriteKml, {Track({{At(1, 2), At(1, 3)}})});
    EXPECT_TRUE(Contains(line, "<coordinates>\n2,1\n3,1\n</coordinates>")) << line;
}

TEST(TrackDocument, KmlOfASinglePoint_IsAPointWithItsTime) {
    const std::string known = Text(WriteKml, {Track({{Fix(1, 2, 3, 1000000000, 0, 0)}})});
    EXPECT_TRUE(Contains(known, "<TimeStamp><when>2001-09-09T01:46:40Z</when></TimeStamp>\n<Style>")) << known;
    EXPECT_TRUE(Contains(known,
                         "<Point><altitudeMode>absolute</altitudeMode><coordinates>\n2,1,3\n"
                         "</coordinates></Point>"))
        << known;
    const std::string bare = Text(WriteKml, {Track({{At(1, 2)}})});
    EXPECT_TRUE(Contains(bare, "<Point><coordinates>\n2,1\n</coordinates></Point>")) << bare;
    EXPECT_FALSE(Contains(bare, "TimeStamp")) << bare;
}

// 0 is an altitude that nobody measured, -0 one at the level of the sea.
TEST(TrackDocument, Altitudes_AreLeftOutPointByPoint) {
    const std::vector<DocumentTrack> tracks = {
        Track({{Fix(1, 2, 5, 0, 0, 0), Fix(1, 3, 0, 0, 0, 0), Fix(1, 4, -0.0, 0, 0, 0)}})};
    EXPECT_TRUE(Contains(Text(WriteCsv, tracks), ",1,2,5,,,\n\"A\",1,1,3,,,,\n\"A\",1,1,4,0,,,\n"));
    EXPECT_TRUE(Contains(Text(WriteGpx, tracks), "lon=\"3\"></trkpt>\n"));
    EXPECT_TRUE(Contains(Text(WriteGpx, tracks), "lon=\"4\"><ele>0</ele></trkpt>\n"));
    EXPECT_TRUE(Contains(Text(WriteKml, tracks), "\n2,1,5\n3,1\n4,1,0\n"));
    EXPECT_EQ(GeoJson(tracks[0]).at("geometry").at("coordinates"),
              nlohmann::json::parse("[[2,1,5],[3,1],[4,1,0]]"));
}

TEST(TrackDocument, AltitudeAtThe180thMeridian_IsKnownBetweenKnownOnesOnly) {
    const auto cut = GeoJson(Track({{Fix(10, 179, 5, 0, 0, 0), Fix(12, -179, 0, 0, 0, 0)}}));
    EXPECT_EQ(cut.at("geometry").at("coordinates"),
              nlohmann::json::parse("[[[179,10,5],[180,11]],[[-180,11],[-179,12]]]"));
}

TEST(TrackDocument, SinkThatRefuses_IsNotAskedAgain) {
    for (const auto write : {WriteGpx, WriteGeoJson, WriteKml, WriteCsv}) {
        for (int pieces = 0; pieces < 12; ++pieces) {
            int asked = 0;
            write({Track({{At(1, 2), At(1, 3)}, {At(2, 2), At(2, 3)}})},
                  [&](std::string_view) { return asked++ < pieces; });
            ASSERT_LE(asked, pieces + 1);
        }
    }
}

}  // namespace
}  // namespace host
