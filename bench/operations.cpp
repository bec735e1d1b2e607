// The main operations one by one, once each, for counting instructions: scripts/bench --check runs them under
// callgrind, which counts what happens within Measured() and nothing else.
//   bench_operations [NAME]      without a name: lists them
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

// Not inlined and with a name that the linker keeps: the counter looks for it.
extern "C" [[gnu::noinline]] void Measured(const std::function<void()>& operation) { operation(); }

namespace {

constexpr std::size_t kPoints = 20000;
constexpr std::size_t kCapacity = 10000;  // of a recording
constexpr std::size_t kBatch = 30;

CTrack DriveAsTrack() {
    CTrack track;
    for (const TckPt& point : Drive(kPoints)) track.AppendPt(point, false);
    return track;
}

constexpr const char* kFailed = "an operation failed";

void ReadGpx() {
    const BenchDevice device;
    const std::string path = device.StoreTrack("track", Drive(kPoints));
    CTrack track;
    Measured([&] { Check(track.Load(path), kFailed); });
    Check(track.GetPtCount() == kPoints, kFailed);
}

// Attributes that are not expected at any point, so that each goes through the parser.
void ReadGpxOfAnother() {
    const BenchDevice device;
    std::ofstream file(device.HostPath("Tracks/track.gpx"), std::ios::binary);
    file << "<gpx><trk><trkseg>\r\n";
    for (std::size_t i = 0; i < kPoints; ++i)
        file << "<trkpt lat=\"47.123\" lon=\"8.5\" id=\"" << i << "\"><ele>400</ele></trkpt>\r\n";
    file << "</trkseg></trk></gpx>\r\n";
    file.close();
    CTrack track;
    Measured([&] { Check(track.Load("\\Tracks\\track.gpx"), kFailed); });
    Check(track.GetPtCount() == kPoints, kFailed);
}

void ScanHeader() {
    const BenchDevice device;
    CTrackProxy handle(device.StoreTrack("track", Drive(kPoints)).c_str());
    Measured([&] { Check(handle.Load(nullptr), kFailed); });
}

void ScanLibrary() {
    constexpr std::size_t kTracks = 100;
    const BenchDevice device;
    for (std::size_t i = 0; i < kTracks; ++i) device.StoreTrack("track" + std::to_string(i), Drive(10));
    CTrackMan& manager = *CTrackMan::Instance();
    char tracks[] = "\\Tracks";
    manager.GetTrackMangSet()->SetNdExtTrackPath(tracks);
    Measured([&] { manager.RefreshFilelist(); });
    Check(manager.GetCnt() == kTracks, kFailed);
}

void WriteGpx() {
    const BenchDevice device;
    CTrack track = DriveAsTrack();
    Measured([&] { Check(track.Save("\\track.gpx"), kFailed); });
    Check(std::filesystem::file_size(device.HostPath("track.gpx")) > kPoints, kFailed);
}

void Simplify() {
    CTrack track = DriveAsTrack();
    Measured([&] { track.SimplifyPt(); });
    Check(track.GetPtCount() < kPoints, kFailed);
}

// Where dividing at the farthest point alone would take a time that grows with the square.
void SimplifySlowLine() {
    CTrack track;
    for (const TckPt& point : SlowLine(kPoints)) track.AppendPt(point, false);
    Measured([&] { track.SimplifyPt(); });
    Check(track.GetPtCount() > 2, kFailed);
}

void Length() {
    const PointList drive = Drive(kPoints);
    double length = 0.0;
    Measured([&] { length = AidCalLength(drive); });
    Check(length > 0.0, kFailed);
}

void Area() {
    const PointList drive = Drive(kPoints);
    double area = 0.0;
    Measured([&] { area = AidCalArea(drive); });
    Check(area != 0.0, kFailed);
}

void KeyPoints() {
    CTrack track = DriveAsTrack();
    PointList keys;
    Measured([&] { track.GetKeyPtList(keys); });
    Check(!keys.empty(), kFailed);
}

void RecordStream() {
    const BenchDevice device;
    CTrack track;
    for (const TckPt& point : Drive(kCapacity)) track.AppendPt(point, false);
    std::FILE* const file = std::fopen(device.HostPath("stream").c_str(), "wb+");
    Measured([&] {
        Check(track.Save(static_cast<void*>(file)), kFailed);
        std::rewind(file);
        Check(track.Load(static_cast<void*>(file)), kFailed);
    });
    Check(track.GetPtCount() == kCapacity, kFailed);
    std::fclose(file);
}

// As a host gives them, one a second, into a recording that is full, as it is most of its life.
void RecordFixes() {
    const BenchDevice device;
    CTrackMan& manager = *CTrackMan::Instance();
    manager.LoadData();
    while (manager.IsLoadingDataToMap()) std::this_thread::yield();
    manager.Start();
    const PointList drive = Drive(kPoints);
    for (std::size_t i = 0; i < kCapacity + kBatch; ++i) manager.SaveToTempTrack(drive[i]);
    Measured([&] {
        for (std::size_t i = kCapacity + kBatch; i < kPoints; ++i) manager.SaveToTempTrack(drive[i]);
    });
    Check(manager.GetLogTrack()->GetPtCount() >= kCapacity - kBatch, kFailed);
}

class FullRecording {
 public:
    FullRecording() {
        m_recording.SetFilePathEx("Log.dat", "LogHd.dat");
        m_recording.SetOverWrt(true);
        Check(m_recording.OpenEx(), kFailed);
        const PointList drive = Drive(kPoints);
        for (std::size_t i = 0; i + kBatch <= kCapacity + 200; i += kBatch) Append(drive, i);
    }
    ~FullRecording() { m_recording.CloseEx(); }
    FullRecording(const FullRecording&) = delete;
    FullRecording& operator=(const FullRecording&) = delete;

    void Append(const PointList& drive, std::size_t first) {
        const auto begin = drive.begin() + static_cast<std::ptrdiff_t>(first);
        PointList batch(begin, begin + kBatch);
        Check(m_recording.AppendEx(batch), kFailed);
    }
    CTrackEx& Recording() { return m_recording; }

 private:
    const BenchDevice m_device;
    CTrackEx m_recording;
};

void AppendBatches() {
    FullRecording full;
    const PointList drive = Drive(kPoints);
    Measured([&] {
        for (std::size_t i = 0; i < 100; ++i) full.Append(drive, kCapacity + 200 + i * kBatch);
    });
}

void OpenRing() {
    FullRecording full;
    Measured([&] { Check(full.Recording().OpenEx(), kFailed); });
}

struct Operation {
    const char* name;
    void (*run)();
};

constexpr Operation kOperations[] = {
    {"read-gpx", ReadGpx},
    {"read-other-gpx", ReadGpxOfAnother},
    {"scan-header", ScanHeader},
    {"scan-library", ScanLibrary},
    {"write-gpx", WriteGpx},
    {"simplify", Simplify},
    {"simplify-slow", SimplifySlowLine},
    {"length", Length},
    {"area", Area},
    {"key-points", KeyPoints},
    {"record-stream", RecordStream},
    {"record-fixes", RecordFixes},
    {"append-batches", AppendBatches},
    {"open-ring", OpenRing},
};

}  // namespace

int main(int argc, char** argv) {
    for (const Operation& operation : kOperations) {
        if (argc < 2) std::puts(operation.name);
        if (argc < 2 || std::strcmp(argv[1], operation.name) != 0) continue;
        operation.run();
        return 0;
    }
    return argc < 2 ? 0 : 1;
}
