// Other programs read what we write, and we read what they write.
#include <cstdio>
#include <sstream>

#include "tests/gpx/gpx_fixture.h"
#include "tests/support/gpx_points.h"
#include "tests/support/process.h"

namespace {

std::string SixDecimals(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6f", value);
    return text;
}

// The lines of a table behind its heading, split at the commas.
std::vector<std::vector<std::string>> Rows(const std::string& table) {
    std::istringstream lines(table);
    std::string line, field;
    std::getline(lines, line);
    std::vector<std::vector<std::string>> rows;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        rows.emplace_back();
        while (std::getline(fields, field, ',')) rows.back().push_back(field);
    }
    return rows;
}

}  // namespace

class GpxPeers : public GpxTest {
 protected:
    GpxPeers() {
        Put(m_metadata.name, "track2014-05-01T10:20:30Z");
        Put(m_metadata.time, "2014-05-01T10:20:30Z");
        Put(m_info.name, "\xB3\xA4 & <b>");
        m_info.number = 200;
        m_info.color = 0xFF0000FF;
        m_info.visible = 1;
        m_info.length = 1234.5;
        std::mt19937 random(12);
        for (std::int32_t i = 0; i < 200; ++i)
            m_points.push_back(Fix(Between(-90, 90, random), Between(-180, 180, random),
                                   Between(1, 4000, random), 1400000000 + i));
    }
    static bool IsInstalled(const std::vector<std::string>& command) {
        return RunProcess(command).exitCode == 0;
    }
};

TEST_F(GpxPeers, Gpsbabel_ReadsEveryPointThatWeWrite) {
    if (!HasGpsbabel()) GTEST_SKIP() << "no gpsbabel here";
    Exported();
    const auto points = GpxPointsByGpsbabel(OnDisk("\\Track\\exported.gpx"));
    ASSERT_TRUE(points);
    ASSERT_EQ(points->size(), m_points.size());
    for (std::size_t i = 0; i < points->size(); ++i) {
        EXPECT_EQ((*points)[i].latitude, SixDecimals(m_points[i].dLatitude));
        EXPECT_EQ((*points)[i].longitude, SixDecimals(m_points[i].dLongitude));
    }
    EXPECT_EQ(points->front().time, "2014-05-13T16:53:20Z");
    EXPECT_EQ(points->back().time, "2014-05-13T16:56:39Z");
}

TEST_F(GpxPeers, WhatGpsbabelWrites_IsReadPointByPoint) {
    if (!HasGpsbabel()) GTEST_SKIP() << "no gpsbabel here";
    Exported();
    Imported ours, theirs;
    ImportFile(L"\\Track\\exported.gpx", ours);
    for (const char* version : {"gpx,gpxver=1.0", "gpx,gpxver=1.1"}) {
        theirs.points.clear();
        ASSERT_TRUE(IsInstalled({"gpsbabel", "-t", "-i", "gpx", "-f", OnDisk("\\Track\\exported.gpx"), "-o",
                                 version, "-F", OnDisk("\\Track\\theirs.gpx")}));
        ASSERT_TRUE(ImportFile(L"\\Track\\theirs.gpx", theirs));
        EXPECT_STREQ(theirs.info.name, "\xB3\xA4 & <b>");
        ASSERT_EQ(theirs.points.size(), ours.points.size());
        for (std::size_t i = 0; i < ours.points.size(); ++i) {
            EXPECT_EQ(theirs.points[i].dLatitude, ours.points[i].dLatitude);
            EXPECT_EQ(theirs.points[i].dLongitude, ours.points[i].dLongitude);
            EXPECT_NEAR(theirs.points[i].dAltitude, ours.points[i].dAltitude, 1e-3);
            EXPECT_EQ(theirs.points[i].lTime, ours.points[i].lTime);
        }
    }
}

TEST_F(GpxPeers, Gdal_ReadsEveryPointThatWeWrite) {
    if (!IsInstalled({"ogrinfo", "--version"})) GTEST_SKIP() << "no GDAL here";
    Exported();
    const ProcessResult run =
        RunProcess({"ogr2ogr", "-f", "CSV", "/vsistdout/", OnDisk("\\Track\\exported.gpx"), "-sql",
                    "select ele from track_points", "-lco", "GEOMETRY=AS_XY"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto rows = Rows(run.out);
    ASSERT_EQ(rows.size(), m_points.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ASSERT_EQ(rows[i].size(), 3u);
        EXPECT_EQ(SixDecimals(std::stod(rows[i][0])), SixDecimals(m_points[i].dLongitude));
        EXPECT_EQ(SixDecimals(std::stod(rows[i][1])), SixDecimals(m_points[i].dLatitude));
        EXPECT_NEAR(std::stod(rows[i][2]), m_points[i].dAltitude, 1e-3);
    }
}

TEST_F(GpxPeers, Gdal_ReadsTheHeaderThatWeWrite) {
    if (!IsInstalled({"ogrinfo", "--version"})) GTEST_SKIP() << "no GDAL here";
    Exported();
    const ProcessResult run = RunProcess({"ogrinfo", "-al", OnDisk("\\Track\\exported.gpx"), "tracks"});
    for (const char* line : {"name (String) = \u957F & <b>", "number (Integer) = 200",
                             "color (Integer) = -16776961", "visible (Integer) = 1", "length (Real) = 1234.5"})
        EXPECT_NE(run.out.find(line), std::string::npos) << line;
}
