#include "bench/support/drive.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace fs = std::filesystem;

namespace {

constexpr double kMetresPerDegree = 111120.0;
constexpr double kSpeed = 14.0;  // [m/s]

fs::path MakeFolder(const fs::path& parent) {
    std::string pattern = (parent / "qtrace-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) != nullptr) return pattern;
    std::fprintf(stderr, "bench: no folder can be made in %s\n", parent.c_str());
    std::exit(1);
}

}  // namespace

PointList Drive(std::size_t count) {
    PointList points(count);
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, 1.0);
    double latitude = 47.0;
    double longitude = 8.0;
    double course = 0.5;
    for (std::size_t i = 0; i < count; ++i) {
        course += 0.08 * noise(random);
        latitude += kSpeed * std::cos(course) / kMetresPerDegree;
        longitude += kSpeed * std::sin(course) / kMetresPerDegree / 0.68;
        if (std::fabs(latitude - 47.0) > 2.0 || std::fabs(longitude - 8.0) > 4.0) course += 0.2;
        TckPt& point = points[i];
        point.dLatitude = latitude + noise(random) / kMetresPerDegree;
        point.dLongitude = longitude + noise(random) / kMetresPerDegree;
        point.dAltitude = 450.0 + 50.0 * std::sin(static_cast<double>(i) * 0.001) + 0.3 * noise(random);
        point.dSpeed = kSpeed;
        point.lTime = static_cast<std::int32_t>(1'000'000'000 + i);
        point.fCourse = static_cast<float>(std::fmod(course * 57.3 + 3600000.0, 360.0));
    }
    return points;
}

PointList SlowLine(std::size_t count) {
    PointList points(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(count);
        points[i].dLatitude = 47.0 + (i % 2 == 0 ? share : -share);
        points[i].dLongitude = 8.0 + share;
    }
    return points;
}

BenchDevice::BenchDevice(Medium medium)
    : m_root(MakeFolder(medium == Medium::Memory ? fs::path("/dev/shm") : fs::current_path())) {
    for (const char* folder : {"App", "Tracks", "User", "Recorded"}) fs::create_directory(m_root / folder);
    SetDeviceRoot(m_root.string());
    SetProgramFolder(L"\\App");
}

BenchDevice::~BenchDevice() { fs::remove_all(m_root); }

std::string BenchDevice::StoreTrack(const std::string& name, const PointList& points) const {
    const std::string path = "\\Tracks\\" + name + ".gpx";
    CTrack track;
    track.SetName(name.c_str());
    for (const TckPt& point : points) track.AppendPt(point, false);
    track.Calculate(true);
    track.Save(path);
    track.Load(path);
    return path;
}
