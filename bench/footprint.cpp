// What the library takes besides time: memory while a document is read or written, the start, what a recorded
// hour writes to storage. Figures, one a line.
//   bench_footprint
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"
#include "gpx/gpx.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kFixesPerHour = 3600;
constexpr std::size_t kFullRing = 10'000;

// [byte] a process needed at most while it did this and nothing else.
double PeakOf(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    rusage used{};
    wait4(child, &status, 0, &used);
    Check(status == 0, "a measured process failed");
    return 1024.0 * static_cast<double>(used.ru_maxrss);
}

void MeasureMemory(std::size_t count) {
    const BenchDevice device;
    // Made in a process of its own: this one is to stay small.
    PeakOf([&] { device.StoreTrack("track", Drive(count)); });
    const double nothing = PeakOf([] {});
    const double read = PeakOf([] {
        CTrack track;
        Check(track.Load("\\Tracks\\track.gpx"), "the track cannot be read");
    });
    const double written = PeakOf([count] {
        PointList points = Drive(count);
        CGPXTransmit writer;
        GpxTrackInfo info{};
        info.points = &points;
        writer.SetTrackInfo(&info);
        Check(writer.ExportGpx(L"\\copy.gpx"), "the track cannot be written");
    });
    const auto size = static_cast<double>(count);
    const auto fileSize = static_cast<double>(fs::file_size(device.Root() / "Tracks/track.gpx"));
    PrintFigure("memory to read GPX", count, "bytes a point", (read - nothing) / size);
    PrintFigure("memory to read GPX", count, "times the file's size", (read - nothing) / fileSize);
    PrintFigure("memory to write GPX", count, "bytes a point, the points included", (written - nothing) / size);
}

void WaitForLoad(CTrackMan& manager) {
    while (manager.IsLoadingDataToMap()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void Record(CTrackMan& manager, const PointList& fixes) {
    for (const TckPt& fix : fixes) manager.SaveToTempTrack(fix);
}

double OneLoad() {
    CTrackMan& manager = *CTrackMan::Instance();
    const double start = Now(Measured::Passing);
    manager.LoadData();
    const double seconds = Now(Measured::Passing) - start;
    WaitForLoad(manager);
    delete CTrackMan::Instance();
    return seconds;
}

double UsualLoad() {
    std::vector<double> seconds(7);
    for (double& each : seconds) each = OneLoad();
    return Median(seconds);
}

void MeasureStart() {
    const BenchDevice device;
    PrintFigure("LoadData returns, the first time, making its files", 0, "seconds", OneLoad());
    PrintFigure("LoadData returns, empty ring", 0, "seconds", UsualLoad());
    CTrackMan& manager = *CTrackMan::Instance();
    manager.LoadData();
    WaitForLoad(manager);
    manager.Start();
    Record(manager, Drive(kFullRing + 100));
    delete CTrackMan::Instance();
    PrintFigure("LoadData returns, full ring", kFullRing, "seconds", UsualLoad());
}

// The table of the code page is made when it is needed first, once a process.
void MeasureFirstCharacter() {
    wchar_t wide[8];
    const double start = Now(Measured::Passing);
    AnsciToWchar("\xB1\xB1\xBE\xA9", wide, 8);
    PrintFigure("the first character beyond ASCII", 0, "seconds", Now(Measured::Passing) - start);
    Check(wide[0] == 0x5317, "the code page is not as it should be");
}

// [byte] written by this process so far: as handed to the system, and as pages of files that became dirty.
struct Written {
    double handed = 0.0;
    double pages = 0.0;
};

Written WrittenSoFar() {
    Written written;
    std::ifstream counters("/proc/self/io");
    std::string name;
    for (double value = 0.0; counters >> name >> value;) {
        if (name == "wchar:") written.handed = value;
        if (name == "write_bytes:") written.pages = value;
    }
    return written;
}

void MeasureRecordedHour() {
    const BenchDevice device(BenchDevice::Medium::Disk);
    CTrackMan& manager = *CTrackMan::Instance();
    manager.LoadData();
    WaitForLoad(manager);
    manager.Start();
    const PointList fixes = Drive(kFullRing + 100 + kFixesPerHour);
    const auto hour = fixes.end() - kFixesPerHour;
    Record(manager, PointList(fixes.begin(), hour));
    const Written before = WrittenSoFar();
    Record(manager, PointList(hour, fixes.end()));
    const Written after = WrittenSoFar();
    delete CTrackMan::Instance();
    PrintFigure("a recorded hour, a fix a second", kFixesPerHour, "bytes written",
                after.handed - before.handed);
    PrintFigure("a recorded hour, a fix a second", kFixesPerHour, "bytes of pages written",
                after.pages - before.pages);
}

}  // namespace

int main() {
    MeasureFirstCharacter();
    for (const std::size_t size : {10'000, 100'000, 1'000'000}) MeasureMemory(size);
    MeasureStart();
    MeasureRecordedHour();
    return 0;
}
