// Each recorded log of a real receiver through the real program, and its track through gpsbabel.
#include <gtest/gtest.h>

#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"
#include "tests/support/recorded_data.h"

namespace host {
namespace {

std::string SixDecimals(double value) {
    std::array<char, 32> text{};
    return {text.data(),
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 6).ptr};
}

GpxPoint AsGpx(const TckPt& point) {
    const std::chrono::sys_seconds time{std::chrono::seconds(point.lTime)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return {SixDecimals(point.dLatitude), SixDecimals(point.dLongitude), text.data()};
}

// Whether the track's points are recorded points, in their order: thinning leaves out, and changes nothing.
bool IsThinned(const std::vector<GpxPoint>& track, const std::vector<TckPt>& recorded) {
    std::size_t found = 0;
    for (std::size_t i = 0; i < recorded.size() && found < track.size(); ++i)
        found += AsGpx(recorded[i]) == track[found];
    return found == track.size();
}

class RealLog : public Recorder, public ::testing::WithParamInterface<const char*> {
 protected:
    void SetUp() override {
        const auto file = RecordedFile("nmea", GetParam());
        if (!file) GTEST_SKIP() << "no recorded data here";
        m_log = ReadFile(*file);
    }
    std::string m_log;
};

TEST_P(RealLog, EachSecondBecomesAPoint) {
    const ProcessResult run = Record({Log(m_log)});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::vector<TckPt> expected = PointsEachSecond(FixesIn(m_log));
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), static_cast<long>(expected.size()));
    const std::size_t held = std::min<std::size_t>(expected.size(), 10000);
    EXPECT_TRUE(SameFixes(Ring().points, Slice(expected, expected.size() - held, expected.size())));
}

TEST_P(RealLog, TrackHoldsRecordedPointsAndItsEnds) {
    ASSERT_EQ(Record({Log(m_log)}).exitCode, 0);
    const std::vector<TckPt> recorded = PointsEachSecond(FixesIn(m_log));
    ASSERT_FALSE(SavedTracks().empty());
    for (const auto& file : SavedTracks()) EXPECT_TRUE(IsThinned(GpxPointsOf(file), recorded)) << file;
    EXPECT_EQ(GpxPointsOf(SavedTracks().front()).front(), AsGpx(recorded.front()));
    EXPECT_EQ(GpxPointsOf(SavedTracks().back()).back(), AsGpx(recorded.back()));
}

TEST_P(RealLog, GpsbabelReadsTheSamePoints) {
    if (!HasGpsbabel()) GTEST_SKIP() << "gpsbabel is not installed";
    ASSERT_EQ(Record({Log(m_log)}).exitCode, 0);
    for (const auto& file : SavedTracks()) {
        const auto read = GpxPointsByGpsbabel(file);
        ASSERT_TRUE(read.has_value()) << file;
        EXPECT_EQ(*read, GpxPointsOf(file));
        EXPECT_FALSE(read->empty());
    }
}

INSTANTIATE_TEST_SUITE_P(Nmea, RealLog,
                         ::testing::Values("drive-sierra-nevada.nmea", "sail-ruegen.nmea",
                                           "drift-amsterdam.nmea", "still-46s-gap.nmea", "sail-short-ais.nmea",
                                           "boat-many-talkers.nmea", "walk-lost-fix.nmea",
                                           "coldstart-gn-talkers.nmea", "rtk-10hz-gap.nmea",
                                           "bad-gga-checksums.nmea", "time-goes-back.nmea",
                                           "gaps-67s-307s.nmea"),
                         [](const auto& log) {
                             std::string name = log.param;
                             name.erase(name.rfind('.'));
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
}  // namespace host
