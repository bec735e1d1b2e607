// Documents of other programs: all are read, and what is read is written and read again.
#include <map>

#include "tests/gpx/recorded_gpx.h"
#include "track/track.h"

namespace {

constexpr int kRefused = -1;

// Points in the first track, counted by a parser that is not ours.
const std::map<std::string, int> kPointsOfFirstTrack = {
    {"gpxpy-cerknicko-jezero.gpx", 0},
    {"gpxpy-Mojstrovka.gpx", 184},
    {"gpxpy-around-visnjan-with-car.gpx", 104},
    {"gpxpy-track-with-empty-segment.gpx", 9},
    {"gpxpy-track-with-extremes.gpx", 25},
    {"gpxpy-track-with-less-sec-time.gpx", 2},
    {"gpxpy-track_with_speed.gpx", 3},
    {"gpxpy-gpx1.0_with_all_fields.gpx", 1},
    {"gpxpy-gpx1.1_with_all_fields.gpx", 1},
    {"gpxpy-route.gpx", 0},
    {"gpxpy-unicode.gpx", 0},
    {"gpxpy-unicode2.gpx", 0},
    {"gpxpy-unicode_with_bom.gpx", 0},
    {"gpxpy-gpx-with-node-with-comments.gpx", 1},
    {"gpxpy-first_and_last_elevation.gpx", 10},
    {"gpxpy-track-with-small-floats.gpx", 3},
    {"gpxpy-default_schema_locations.gpx", 0},
    {"opentracks-gpx_timezone.gpx", 1},
    {"opentracks-legacy_gpx_pause_resume.gpx", 6},
    {"opentracks-gpx11_without_speed.gpx", 3},
    {"georust-wahoo_example.gpx", 3},
    {"georust-empty_name_tag.gpx", 0},
    {"georust-wikipedia_example.gpx", 3},
    {"georust-caltopo-export.gpx", 3},
    {"georust-gpsies_example.gpx", 41},
    {"georust-strava_route_example.gpx", 113},
    {"georust-viking_with_route_extensions.gpx", 5},
    {"jpx-GPX_10-1.gpx", 2},
    {"jpx-GPX_10-3.gpx", 2},
    {"jpx-GPX_extensions.gpx", 4},
    {"jpx-GPX_invalid_extensions.gpx", kRefused},  // an element that is never closed
    {"jpx-ISSUE-49.gpx", 26},
    {"jpx-ISSUE-151.gpx", 156},
    {"jpx-ISSUE-82.gpx", 479},
    {"jpx-extensions-track.gpx", 0},
    {"jpx-Austria.gpx", 0},
    {"gpsbabel-basecamp.gpx", 2},
    {"gpsbabel-expertgps.gpx", 64},
    {"gpsbabel-empty.gpx", 0},
    {"gpsbabel-GCGCA8.gpx", 0},
    {"gpsbabel-segmented_tracks.gpx", 23},
    {"gpsbabel-garmin-edge-200-output.gpx", 22},
    {"gpsbabel-split-raw.gpx", 22},
    {"gpsbabel-garminconnect.gpx", 68},
    {"gpsbabel-gpx_garmin_extensions.gpx", 8},
    {"gpsbabel-garmin-forerunner-10-output.gpx", 514},
    {"derived-utf16le.gpx", 184},
    {"derived-utf16be.gpx", kRefused},  // the units are taken for little-endian
    {"derived-truncated.gpx", kRefused},
    {"derived-prefixed.gpx", kRefused},  // no gpx element as written
    {"derived-crlf-bom.gpx", 41},
};

}  // namespace

TEST_F(RecordedGpx, EveryFile_HasTheStatedPointsInItsFirstTrack) {
    int files = 0;
    for (const auto& [name, count] : kPointsOfFirstTrack) {
        SCOPED_TRACE(name);
        const auto file = RecordedFile("gpx", name);
        ASSERT_TRUE(file);
        CopyToTrackFolder(*file);
        Imported imported;
        EXPECT_EQ(ImportFile(L"\\Track\\imported.gpx", imported), count != kRefused);
        EXPECT_EQ(imported.points.size(), static_cast<std::size_t>(std::max(count, 0)));
        ++files;
    }
    EXPECT_EQ(files, 51);
}

TEST_F(RecordedGpx, EveryPosition_IsTheOneInTheText) {
    for (const auto& [name, count] : kPointsOfFirstTrack) {
        if (count < 1) continue;
        SCOPED_TRACE(name);
        const auto file = RecordedFile("gpx", name);
        ASSERT_TRUE(file);
        CopyToTrackFolder(*file);
        Imported imported;
        ImportFile(L"\\Track\\imported.gpx", imported);
        EXPECT_EQ(PositionsOf(imported.points), PositionsOf(ReadFile(*file)));
    }
}

TEST_F(RecordedGpx, Head_IsReadWhereTheFirstSegmentHasAPoint) {
    for (const auto& [name, count] : kPointsOfFirstTrack) {
        SCOPED_TRACE(name);
        CopyToTrackFolder(RecordedFile("gpx", name).value());
        Imported head;
        EXPECT_EQ(ImportFile(L"\\Track\\imported.gpx", head, &CGPXTransmit::ImportGpxHead), count > 0);
        EXPECT_TRUE(head.points.empty());
    }
}

TEST_F(RecordedGpx, Encodings_AreDetected) {
    for (const auto& [name, encoding] : std::map<std::string, int>{{"derived-utf16le.gpx", 2},
                                                                   {"derived-utf16be.gpx", 2},
                                                                   {"derived-crlf-bom.gpx", 1},
                                                                   {"gpxpy-unicode_with_bom.gpx", 1},
                                                                   {"gpsbabel-expertgps.gpx", 0},
                                                                   {"gpxpy-track_with_speed.gpx", 0},
                                                                   {"gpxpy-Mojstrovka.gpx", 1}}) {
        CopyToTrackFolder(RecordedFile("gpx", name).value());
        Imported imported;
        ImportFile(L"\\Track\\imported.gpx", imported);
        EXPECT_EQ(imported.encoding, encoding) << name;
    }
}

TEST_F(RecordedGpx, NameInCdata_IsTheTracksName) {
    CopyToTrackFolder(RecordedFile("gpx", "opentracks-gpx_timezone.gpx").value());
    Imported imported;
    ImportFile(L"\\Track\\imported.gpx", imported);
    EXPECT_STREQ(imported.info.name, "2021-01-07 22:51");
}

// As a track of the library: what was written may differ from what was read by the rounding of the text alone.
TEST_F(RecordedGpx, TrackThatIsSavedAndLoaded_HasTheSamePoints) {
    for (const auto& [name, count] : kPointsOfFirstTrack) {
        SCOPED_TRACE(name);
        CopyToTrackFolder(RecordedFile("gpx", name).value());
        CTrack track, again, third;
        ASSERT_EQ(track.Load("\\Track\\imported.gpx"), count != kRefused);
        if (count == kRefused) continue;
        ASSERT_TRUE(track.Save("\\Track\\saved.gpx"));
        ASSERT_TRUE(again.Load("\\Track\\saved.gpx"));
        ASSERT_EQ(again.GetPtCount(), track.GetPtCount());
        for (std::size_t i = 0; i < again.GetPtCount(); ++i) {
            const TckPt &read = track.GetPtList()[i], &reread = again.GetPtList()[i];
            EXPECT_NEAR(reread.dLatitude, read.dLatitude, 0.5000001e-6);
            EXPECT_NEAR(reread.dLongitude, read.dLongitude, 0.5000001e-6);
            EXPECT_NEAR(reread.dAltitude, read.dAltitude, 1e-3);
            if (read.lTime != 0) {
                EXPECT_EQ(reread.lTime, read.lTime);
            }
        }
    }
}
