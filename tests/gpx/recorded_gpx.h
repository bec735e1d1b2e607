// Documents of other programs, on a device; where they are missing the tests skip.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "tests/gpx/gpx_fixture.h"
#include "tests/support/recorded_data.h"

// The positions of the first trk, found by a plain search in the text.
inline std::vector<std::pair<double, double>> PositionsOf(std::string text) {
    if (text.starts_with("\xFF\xFE")) std::erase(text, '\0');
    for (std::size_t at = text.find("<!--"); at != text.npos; at = text.find("<!--"))
        text.erase(at, text.find("-->", at) + 3 - at);
    std::size_t at = std::min(text.find("<trk>"), text.find("<trk "));
    const std::size_t end = text.find("</trk>", at);
    const auto attribute = [&text](std::size_t from, const std::string& name) {
        const std::size_t value = text.find(name + "=", from) + name.size() + 2;
        return std::strtod(text.c_str() + value, nullptr);
    };
    std::vector<std::pair<double, double>> positions;
    for (at = text.find("<trkpt", at); at < end; at = text.find("<trkpt", at + 1))
        positions.emplace_back(attribute(at, " lat"), attribute(at, " lon"));
    return positions;
}

inline std::vector<std::pair<double, double>> PositionsOf(const Points& points) {
    std::vector<std::pair<double, double>> positions;
    for (const TckPt& point : points) positions.emplace_back(point.dLatitude, point.dLongitude);
    return positions;
}

class RecordedGpx : public GpxTest {
 protected:
    void SetUp() override {
        if (RecordedFiles("gpx").empty()) GTEST_SKIP() << "no recorded data here";
    }
    void CopyToTrackFolder(const std::filesystem::path& file) {
        std::filesystem::remove_all(OnDisk("\\Track"));
        Write("\\Track\\imported.gpx", ReadFile(file));
    }
};
