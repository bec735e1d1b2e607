// Points written as a GPX document: ours, pugixml building and saving the same tree, and the limit, a file of
// the same bytes from memory. In memory too, so that no disk is waited for.
//   bench_gpx_write [POINTS...]
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <pugixml.hpp>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

namespace {

// "%f", by the fastest way there is in the standard library.
struct RealText {
    explicit RealText(double value) {
        *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, 6).ptr = '\0';
    }
    char text[64];
};

struct TimeText {
    explicit TimeText(std::int32_t seconds) {
        const std::time_t time = seconds;
        std::tm parts{};
        gmtime_r(&time, &parts);
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    }
    char text[32];
};

void WriteWithPugixml(const PointList& points, const std::string& path) {
    pugi::xml_document document;
    auto gpx = document.append_child("gpx");
    gpx.append_attribute("version") = "1.0";
    gpx.append_attribute("xmlns") = "http://www.topografix.com/GPX/1/0";
    auto track = gpx.append_child("trk");
    track.append_child("name").text() = "track";
    auto segment = track.append_child("trkseg");
    for (const TckPt& point : points) {
        auto element = segment.append_child("trkpt");
        element.append_attribute("lat") = RealText(point.dLatitude).text;
        element.append_attribute("lon") = RealText(point.dLongitude).text;
        element.append_child("ele").text() = RealText(point.dAltitude).text;
        element.append_child("time").text() = TimeText(point.lTime).text;
    }
    document.save_file(path.c_str());
}

void WriteBytes(const std::string& bytes, const std::string& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
    ::close(file);
}

void MeasureWriting(std::size_t count) {
    const BenchDevice device;
    const PointList points = Drive(count);
    CTrack track;
    track.SetName("track");
    for (const TckPt& point : points) track.AppendPt(point, false);
    track.Calculate(true);
    track.Save("\\Tracks\\ours.gpx");
    std::ifstream written(device.HostPath("Tracks/ours.gpx"), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(written), {}};

    SideBySide works("write GPX", count);
    works.Add("ours", [&] { track.Save("\\Tracks\\ours.gpx"); });
    works.Add("pugixml", [&] { WriteWithPugixml(points, device.HostPath("pugixml.gpx")); });
    works.Add("limit: writing the same bytes", [&] { WriteBytes(bytes, device.HostPath("limit.gpx")); });
    works.Measure();
}

}  // namespace

int main(int argc, char** argv) {
    for (const std::size_t size : SizesFrom(argc, argv, {1000, 10'000, 100'000, 1'000'000}))
        MeasureWriting(size);
    return 0;
}
