// What one fix costs on its way through CTrackMan::SaveToTempTrack, with the ring file in a memory file system
// so that waiting for storage does not count, and whether memory stays flat.
//   bench_record_fixes [FIXES]      default: 10 million
// The recording is full after the first 10000 points, so each batch also takes the oldest points out.
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "qtrace.h"

namespace fs = std::filesystem;

namespace {

constexpr long kDefaultFixes = 10'000'000;
constexpr long kReports = 10;

// A drive on a winding road at 1 Hz.
TckPt Fix(long second) {
    TckPt fix{};
    const double turn = static_cast<double>(second) * 0.01;
    fix.dLatitude = 47.0 + 0.1 * std::sin(turn * 0.37);
    fix.dLongitude = 8.0 + 0.1 * std::sin(turn * 0.23);
    fix.dAltitude = 400.0;
    fix.dSpeed = 14.0;
    fix.lTime = static_cast<std::int32_t>(1'000'000'000 + second);
    fix.fCourse = static_cast<float>(std::fmod(turn, 360.0));
    return fix;
}

long ResidentKiB() {
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

long OpenFiles() { return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator{}); }

fs::path MakeDeviceFolder() {
    std::string pattern = "/dev/shm/qtrace-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        std::fputs("bench: no folder can be made in /dev/shm\n", stderr);
        std::exit(1);
    }
    return pattern;
}

double RecordFixes(CTrackMan& manager, long first, long count) {
    using Clock = std::chrono::steady_clock;
    std::chrono::nanoseconds spent{0};
    constexpr long kBlock = 1000;
    static TckPt fixes[kBlock];
    for (long done = 0; done < count; done += kBlock) {
        for (long i = 0; i < kBlock; ++i) fixes[i] = Fix(first + done + i);
        const auto start = Clock::now();
        for (const TckPt& fix : fixes) manager.SaveToTempTrack(fix);
        spent += Clock::now() - start;
    }
    return static_cast<double>(spent.count()) / static_cast<double>(count);
}

}  // namespace

int main(int argc, char** argv) {
    const long fixes = argc > 1 ? std::atol(argv[1]) : kDefaultFixes;
    const fs::path device = MakeDeviceFolder();
    fs::create_directory(device / "App");
    SetDeviceRoot(device.string());
    SetProgramFolder(L"\\App");

    CTrackMan& manager = *CTrackMan::Instance();
    manager.LoadData();
    while (manager.IsLoadingDataToMap()) usleep(1000);
    manager.Start();

    std::printf("%12s %10s %12s %6s %8s\n", "fixes", "ns/fix", "resident KiB", "files", "points");
    for (long report = 0; report < kReports; ++report) {
        const long part = fixes / kReports;
        const double cost = RecordFixes(manager, report * part, part);
        std::printf("%12ld %10.0f %12ld %6ld %8lu\n", (report + 1) * part, cost, ResidentKiB(), OpenFiles(),
                    manager.GetLogTrack()->GetPtCount());
    }
    manager.Stop();
    delete CTrackMan::Instance();
    fs::remove_all(device);
    return 0;
}
