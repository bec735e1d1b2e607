// Whole programs against whole programs: a GPX file read, and read and written again, by a program of ours,
// gpsbabel and gpxpy. What counts is the processor's time of each from its start to its end.
//   bench_processes              measures
//   bench_processes read FILE [COPY]      is the program of ours: device paths, below the root in
//   QTRACE_BENCH_ROOT
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <initializer_list>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kReadWithGpxpy = "import gpxpy, sys\ngpxpy.parse(open(sys.argv[1]))";
constexpr const char* kCopyWithGpxpy =
    "import gpxpy, sys\nopen(sys.argv[2], 'w').write(gpxpy.parse(open(sys.argv[1])).to_xml(version='1.0'))";

void Run(Arguments arguments) {
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> raw;
        for (std::string& argument : arguments) raw.push_back(argument.data());
        raw.push_back(nullptr);
        execvp(raw[0], raw.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Check(WIFEXITED(status) && WEXITSTATUS(status) == 0, (arguments.front() + " failed").c_str());
}

void Measure(std::size_t count, bool withGpxpy) {
    const BenchDevice device;
    device.StoreTrack("track", Drive(count));
    setenv("QTRACE_BENCH_ROOT", device.Root().c_str(), 1);
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string in = device.HostPath("Tracks/track.gpx");
    const std::string out = device.HostPath("copy.gpx");

    SideBySide reading("read GPX, whole program", count, Measured::Children);
    reading.Add("ours", [&] { Run({self, "read", "\\Tracks\\track.gpx"}); });
    reading.Add("gpsbabel", [&] { Run({"gpsbabel", "-t", "-i", "gpx", "-f", in}); });
    if (withGpxpy) reading.Add("gpxpy", [&] { Run({"/usr/bin/python3", "-c", kReadWithGpxpy, in}); });
    reading.Measure();
    SideBySide copying("read and write GPX, whole program", count, Measured::Children);
    copying.Add("ours", [&] { Run({self, "read", "\\Tracks\\track.gpx", "\\copy.gpx"}); });
    copying.Add("gpsbabel", [&] {
        Run({"gpsbabel", "-t", "-i", "gpx", "-f", in, "-o", "gpx,gpxver=1.0", "-F", out});
    });
    if (withGpxpy) copying.Add("gpxpy", [&] { Run({"/usr/bin/python3", "-c", kCopyWithGpxpy, in, out}); });
    copying.Measure();
}

int ReadAndCopy(const char* from, const char* to) {
    SetDeviceRoot(std::getenv("QTRACE_BENCH_ROOT"));
    CTrack track;
    if (!track.Load(from)) return 1;
    track.Calculate(true);
    if (to != nullptr) track.Save(to);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "read") == 0)
        return ReadAndCopy(argv[2], argc > 3 ? argv[3] : nullptr);
    Measure(1000, true);
    Measure(10'000, true);
    Measure(100'000, true);
    return 0;
}
