#include "tests/support/gpx_points.h"

#include <algorithm>
#include <sstream>

#include "tests/support/device.h"
#include "tests/support/process.h"

namespace {

// What stands between two texts from `at` on; empty when they are not there.
std::string Between(const std::string& text, const std::string& before, const std::string& after,
                    std::size_t at) {
    const std::size_t begin = text.find(before, at);
    if (begin == std::string::npos) return "";
    const std::size_t end = text.find(after, begin + before.size());
    return text.substr(begin + before.size(), end - begin - before.size());
}

// "2024/05/12" and "08:15:07" as GPX writes them.
std::string GpxTime(std::string date, const std::string& clock) {
    std::replace(date.begin(), date.end(), '/', '-');
    return date + 'T' + clock + 'Z';
}

std::vector<std::string> Split(std::string line) {
    if (line.ends_with('\r')) line.pop_back();
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
    return fields;
}

std::size_t Column(const std::vector<std::string>& header, const char* name) {
    return static_cast<std::size_t>(std::find(header.begin(), header.end(), name) - header.begin());
}

}  // namespace

std::vector<GpxPoint> GpxPointsOf(const std::filesystem::path& file) {
    const std::string text = ReadFile(file);
    std::vector<GpxPoint> points;
    for (std::size_t at = text.find("<trkpt"); at != std::string::npos; at = text.find("<trkpt", at + 1)) {
        const std::string point = text.substr(at, text.find("</trkpt>", at) - at);
        points.push_back({Between(point, "lat=\"", "\"", 0), Between(point, "lon=\"", "\"", 0),
                          Between(point, "<time>", "</time>", 0)});
    }
    return points;
}

bool HasGpsbabel() { return RunProcess({"gpsbabel", "-V"}).exitCode == 0; }

std::optional<std::vector<GpxPoint>> GpxPointsByGpsbabel(const std::filesystem::path& file) {
    const ProcessResult run =
        RunProcess({"gpsbabel", "-t", "-i", "gpx", "-f", file.string(), "-o", "unicsv,utc=0", "-F", "-"});
    if (run.exitCode != 0) return std::nullopt;
    std::istringstream lines(run.out);
    std::string line;
    std::getline(lines, line);
    const std::vector<std::string> header = Split(line);
    const std::size_t latitude = Column(header, "Latitude"), longitude = Column(header, "Longitude"),
                      date = Column(header, "Date"), time = Column(header, "Time");
    std::vector<GpxPoint> points;
    while (std::getline(lines, line)) {
        const std::vector<std::string> fields = Split(line);
        if (fields.empty()) continue;
        if (fields.size() <= std::max({latitude, longitude, date, time})) return std::nullopt;
        points.push_back({fields[latitude], fields[longitude], GpxTime(fields[date], fields[time])});
    }
    return points;
}
