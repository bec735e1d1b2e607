// Points written as a GPX document: ours, pugixml building and saving the same tree, and the limit, a file of
// the same bytes from memory. In memory too, so that no disk is waited for.
//   bench_gpx_write [POINTS...]
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
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

// "2001-09-09T01:46:40Z" without a detour through the C library.
struct TimeText {
    explicit TimeText(std::int32_t seconds) {
        using namespace std::chrono;
        const sys_seconds time{std::chrono::seconds(seconds)};
        const year_month_day date(floor<days>(time));
        const hh_mm_ss clock(time - floor<days>(time));
        Put(0, 4, static_cast<int>(date.year()));
        Put(5, 2, static_cast<int>(static_cast<unsigned>(date.month())));
        Put(8, 2, static_cast<int>(static_cast<unsigned>(date.day())));
        Put(11, 2, static_cast<int>(clock.hours().count()));
        Put(14, 2, static_cast<int>(clock.minutes().count()));
        Put(17, 2, static_cast<int>(clock.seconds().count()));
    }
    void Put(std::size_t at, std::size_t digits, int value) {
        for (; digits > 0; --digits, value /= 10) text[at + digits - 1] = static_cast<char>('0' + value % 10);
    }
    char text[21] = "0000-00-00T00:00:00Z";
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
    Check(document.save_file(path.c_str()), "pugixml cannot write");
}

void WriteBytes(const std::string& bytes, const std::string& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
    ::close(file);
}

// Ours writes altitudes as floats hold them.
bool IsSame(const TckPt& a, const TckPt& b) {
    return a.dLatitude == b.dLatitude && a.dLongitude == b.dLongitude && a.lTime == b.lTime &&
           std::fabs(a.dAltitude - b.dAltitude) < 0.001;
}

void CheckSame(const std::string& a, const std::string& b) {
    CTrack first, second;
    Check(first.Load(a) && second.Load(b), "a document cannot be read");
    const PointList &of = first.GetPtList(), &other = second.GetPtList();
    Check(std::equal(of.begin(), of.end(), other.begin(), other.end(), IsSame), "a point is not the same");
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
    WriteWithPugixml(points, device.HostPath("Tracks/pugixml.gpx"));
    CheckSame("\\Tracks\\ours.gpx", "\\Tracks\\pugixml.gpx");

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
