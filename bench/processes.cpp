// Whole programs against whole programs: started and ended at once, a GPX file read, and read and written
// again, by a program of ours, gpsbabel and gpxpy. What counts is the processor's time of each from its start
// to its end.
//   bench_processes [POINTS...]
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kReadWithGpxpy = "import gpxpy, sys\ngpxpy.parse(open(sys.argv[1]))";
constexpr const char* kCopyWithGpxpy =
    "import gpxpy, sys\nopen(sys.argv[2], 'w').write(gpxpy.parse(open(sys.argv[1])).to_xml(version='1.0'))";

// A process that is forked would begin with the memory of this one.
void Run(Arguments arguments) {
    std::vector<char*> raw;
    for (std::string& argument : arguments) raw.push_back(argument.data());
    raw.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    if (posix_spawnp(&child, raw[0], nullptr, nullptr, raw.data(), environ) == 0) waitpid(child, &status, 0);
    Check(WIFEXITED(status) && WEXITSTATUS(status) == 0, (arguments.front() + " failed").c_str());
}

std::string Beside(const char* program) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
}

void MeasureStart() {
    const BenchDevice device;
    const std::string empty = device.HostPath("empty.gpx");
    std::ofstream(empty) << "<gpx/>";
    SideBySide starting("start and end of a program", 1, Measured::Children);
    starting.Add("ours", [&] { Run({Beside("gpx_program"), device.Root(), "\\empty.gpx"}); });
    starting.Add("the command qtrace", [&] {
        Run({Beside("../host/qtrace"), "print-track-names", "--device", device.Root()});
    });
    starting.Add("gpsbabel", [&] { Run({"gpsbabel", "-i", "gpx", "-f", empty}); });
    starting.Add("gpxpy", [&] { Run({"/usr/bin/python3", "-c", "import gpxpy"}); });
    starting.Measure();
}

void Measure(std::size_t count, bool withGpxpy) {
    const BenchDevice device;
    device.StoreTrack("track", Drive(count));
    const std::string self = Beside("gpx_program"), root = device.Root();
    const std::string in = device.HostPath("Tracks/track.gpx");
    const std::string out = device.HostPath("copy.gpx");

    SideBySide reading("read GPX, whole program", count, Measured::Children);
    reading.Add("ours", [&] { Run({self, root, "\\Tracks\\track.gpx"}); });
    reading.Add("gpsbabel", [&] { Run({"gpsbabel", "-t", "-i", "gpx", "-f", in}); });
    if (withGpxpy) reading.Add("gpxpy", [&] { Run({"/usr/bin/python3", "-c", kReadWithGpxpy, in}); });
    reading.Measure();
    SideBySide copying("read and write GPX, whole program", count, Measured::Children);
    copying.Add("ours", [&] { Run({self, root, "\\Tracks\\track.gpx", "\\copy.gpx"}); });
    copying.Add("gpsbabel", [&] {
        Run({"gpsbabel", "-t", "-i", "gpx", "-f", in, "-o", "gpx,gpxver=1.0", "-F", out});
    });
    if (withGpxpy) copying.Add("gpxpy", [&] { Run({"/usr/bin/python3", "-c", kCopyWithGpxpy, in, out}); });
    copying.Measure();
}

}  // namespace

int main(int argc, char** argv) {
    constexpr std::size_t kMostForGpxpy = 100'000;  // which takes half a minute for a million
    MeasureStart();
    for (const std::size_t size : SizesFrom(argc, argv, {1000, 10'000, 100'000, 1'000'000}))
        Measure(size, size <= kMostForGpxpy);
    return 0;
}
