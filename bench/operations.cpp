// The main operations one by one, once each, for counting instructions: scripts/bench --check runs them under
// callgrind, which counts what happens within Measured() and nothing else.
//   bench_operations [NAME]      without a name: lists them
#include <cstdio>
#include <cstring>
#include <functional>

#include "bench/support/drive.h"

// Not inlined and with a name that the linker keeps: the counter looks for it.
extern "C" [[gnu::noinline]] void Measured(const std::function<void()>& operation) { operation(); }

namespace {

constexpr std::size_t kPoints = 20000;
constexpr std::size_t kBatch = 30;

CTrack DriveAsTrack() {
    CTrack track;
    for (const TckPt& point : Drive(kPoints)) track.AppendPt(point, false);
    return track;
}

void ReadGpx() {
    const BenchDevice device;
    const std::string path = device.StoreTrack("track", Drive(kPoints));
    CTrack track;
    Measured([&] { track.Load(path); });
}

void ScanHeader() {
    const BenchDevice device;
    CTrackProxy handle(device.StoreTrack("track", Drive(kPoints)).c_str());
    Measured([&] { handle.Load(nullptr); });
}

void WriteGpx() {
    const BenchDevice device;
    CTrack track = DriveAsTrack();
    Measured([&] { track.Save("\\track.gpx"); });
}

void Simplify() {
    CTrack track = DriveAsTrack();
    Measured([&] { track.SimplifyPt(); });
}

void LengthAndArea() {
    CTrack track = DriveAsTrack();
    Measured([&] { track.Calculate(true); });
}

void KeyPoints() {
    CTrack track = DriveAsTrack();
    PointList keys;
    Measured([&] { track.GetKeyPtList(keys); });
}

// Full, as it is most of its life.
class FullRecording {
 public:
    FullRecording() {
        m_recording.SetFilePathEx("Log.dat", "LogHd.dat");
        m_recording.SetOverWrt(true);
        m_recording.OpenEx();
        const PointList drive = Drive(kPoints);
        for (std::size_t i = 0; i + kBatch <= 10200; i += kBatch) Append(drive, i);
    }
    ~FullRecording() { m_recording.CloseEx(); }
    FullRecording(const FullRecording&) = delete;
    FullRecording& operator=(const FullRecording&) = delete;

    void Append(const PointList& drive, std::size_t first) {
        const auto begin = drive.begin() + static_cast<std::ptrdiff_t>(first);
        PointList batch(begin, begin + kBatch);
        m_recording.AppendEx(batch);
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
        for (std::size_t i = 0; i < 100; ++i) full.Append(drive, 10200 + i * kBatch);
    });
}

void OpenRing() {
    FullRecording full;
    Measured([&] { full.Recording().OpenEx(); });
}

struct Operation {
    const char* name;
    void (*run)();
};

constexpr Operation kOperations[] = {
    {"read-gpx", ReadGpx},
    {"scan-header", ScanHeader},
    {"write-gpx", WriteGpx},
    {"simplify", Simplify},
    {"length-area", LengthAndArea},
    {"key-points", KeyPoints},
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
