// The list of a library rebuilt from its folder: ours, pugixml reading the same headers, and the limit, the
// same files read into memory and nothing done with them.
//   bench_scan [TRACKS...]      tracks of 1000 points each
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <pugixml.hpp>

#include "bench/support/drive.h"
#include "bench/support/peer_values.h"
#include "bench/support/side_by_side.h"

namespace fs = std::filesystem;

namespace {

void Check(bool isRight) { ::Check(isRight, "a scan does not find the tracks"); }

constexpr std::size_t kPointsEach = 1000;
constexpr std::size_t kMostCompared = 1000;  // finding a track by its name looks at all

struct Header {
    std::string path;
    std::string name;
    int points;
    int color;
    bool isVisible;
    double length;
    double area;
    std::int32_t start;
    std::int32_t end;
};

std::vector<Header> ScanWithPugixml(const fs::path& folder) {
    std::vector<Header> headers;
    for (const auto& entry : fs::directory_iterator(folder)) {
        pugi::xml_document document;
        if (!document.load_file(entry.path().c_str())) continue;
        const auto track = document.child("gpx").child("trk");
        if (!track.child("trkseg").child("trkpt")) continue;
        const auto own = track.child("extensions");
        headers.push_back({entry.path(), track.child_value("name"), PeerInteger(track.child_value("number")),
                           PeerInteger(own.child_value("color")), PeerInteger(own.child_value("visible")) != 0,
                           PeerReal(own.child_value("length")), PeerReal(own.child_value("area")),
                           PeerTime(own.child_value("starttime")), PeerTime(own.child_value("endtime"))});
    }
    return headers;
}

// But for name and visibility: the list gives tracks of one name others, and shows so many at most.
bool IsAs(CTrackProxy& track, const Header& header) {
    return track.GetPtCount() == static_cast<unsigned long>(header.points) &&
           track.GetColor() == static_cast<unsigned>(header.color) && track.GetLength() == header.length &&
           track.GetArea() == header.area && track.GetStartTime() == header.start &&
           track.GetEndTime() == header.end;
}

void CheckSame(CTrackMan& manager, const std::vector<Header>& headers) {
    Check(manager.GetCnt() == headers.size());
    for (const Header& header : headers) {
        CTrackProxy* const track = manager.GetTrackByFile(fs::path(header.path).stem());
        Check(track != nullptr && IsAs(*track, header));
    }
}

std::size_t ReadFiles(const fs::path& folder) {
    static std::vector<char> buffer(1 << 20);
    std::size_t total = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const int file = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
        while (const auto got = ::read(file, buffer.data(), buffer.size()))
            total += static_cast<std::size_t>(got);
        ::close(file);
    }
    return total;
}

void MeasureScan(std::size_t count) {
    const BenchDevice device;
    const fs::path folder = device.Root() / "Library";
    fs::create_directory(folder);
    const PointList drive = Drive(kPointsEach + count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto first = drive.begin() + static_cast<std::ptrdiff_t>(i);
        device.StoreTrack("new", PointList(first, first + kPointsEach));
        fs::rename(device.Root() / "Tracks/new.gpx", folder / ("track" + std::to_string(i) + ".gpx"));
    }
    CTrackMan& manager = *CTrackMan::Instance();
    char tracks[] = "\\Library";
    manager.GetTrackMangSet()->SetNdExtTrackPath(tracks);
    manager.RefreshFilelist();
    if (count <= kMostCompared) CheckSame(manager, ScanWithPugixml(folder));
    Check(manager.GetCnt() == count && ReadFiles(folder) > count * kPointsEach);

    SideBySide works("scan library", count);
    works.Add("ours", [&] { manager.RefreshFilelist(); });
    works.Add("pugixml", [&] { ScanWithPugixml(folder); });
    works.Add("limit: reading the same bytes", [&] { ReadFiles(folder); });
    works.Measure();
    delete CTrackMan::Instance();
}

}  // namespace

int main(int argc, char** argv) {
    for (const std::size_t size : SizesFrom(argc, argv, {20, 1000, 10'000})) MeasureScan(size);
    return 0;
}
