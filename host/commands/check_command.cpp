// `qtrace check`: whether everything in the device folder is as it should be.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/recording/device_health.h"
#include "host/text/display_width.h"
#include "host/text/json.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

struct DeviceHealth {
    std::vector<TrackHealth> tracks;
    RecordingView files;
    RecordingHealth recording;
    std::vector<std::string> leftovers;

    std::size_t GoodTracks() const {
        return static_cast<std::size_t>(std::count_if(
            tracks.begin(), tracks.end(), [](const TrackHealth& track) { return track.problems.empty(); }));
    }
    bool IsGood() const {
        return GoodTracks() == tracks.size() && recording.problems.empty() && leftovers.empty();
    }
};

void PrintLines(const std::vector<std::string>& lines, const std::string& before = "") {
    for (const std::string& line : lines) std::cout << "  " << Printable(before + line) << '\n';
}

void Print(const DeviceHealth& health) {
    std::cout << "Tracks      " << health.tracks.size() << ", " << health.GoodTracks() << " good\n";
    for (const TrackHealth& track : health.tracks)
        for (const auto& lines : {track.problems, track.notes}) PrintLines(lines, Utf8Of(track.file) + ": ");
    const RingImage& ring = health.files.image;
    std::cout << "Recording   "
              << (health.files.exists ? Counted(ring.count, "record", "records") + ", " +
                                            std::to_string(ring.Count(RecordState::Good)) + " good"
                                      : "none")
              << '\n';
    PrintLines(health.recording.notes);
    PrintLines(health.recording.problems);
    std::cout << "Left behind " << (health.leftovers.empty() ? "nothing\n" : "\n");
    PrintLines(health.leftovers);
}

Json JsonOf(const TrackHealth& track) {
    return {{"file", Utf8Of(track.file)},
            {"name", TextOrNull(track.name)},
            {"points", track.points},
            {"problems", track.problems},
            {"notes", track.notes}};
}

void PrintAsJson(const DeviceHealth& health) {
    Json tracks = Json::array();
    for (const TrackHealth& track : health.tracks) tracks.push_back(JsonOf(track));
    const RingImage& ring = health.files.image;
    const Json recording = {{"exists", health.files.exists},
                            {"records", ring.count},
                            {"good", ring.Count(RecordState::Good)},
                            {"notes", health.recording.notes},
                            {"problems", health.recording.problems}};
    PrintJson({{"good", health.IsGood()},
               {"tracks", tracks},
               {"recording", recording},
               {"left_behind", health.leftovers}});
}

int Check(bool asJson, const HostSettings& settings) {
    const DeviceFolder device(settings);
    std::error_code unreadable;
    if (!std::filesystem::is_directory(device.Root(), unreadable))
        return Fail("check", "there is no device folder " + Utf8Of(device.Root()));
    const Library library(settings);
    DeviceHealth health;
    health.tracks = CheckTracks(library);
    health.files = ViewRecording(device);
    health.recording = CheckRecording(health.files);
    health.leftovers = FindLeftovers(device);
    asJson ? PrintAsJson(health) : Print(health);
    return health.IsGood() ? kDone : kFailed;
}

}  // namespace

void AddCheckCommand(Program& program) {
    auto asJson = std::make_shared<bool>(false);
    CLI::App& command = AddCommand(program, "check", "Check every stored track and the recording");
    command.add_flag("--json", *asJson, "Say it as JSON");
    command.footer("The exit code is 1 when anything is wrong. A recorder that runs is not disturbed.");
    command.callback([asJson, &program] { program.exitCode = Check(*asJson, program.settings); });
}

}  // namespace host
