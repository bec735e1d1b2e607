#include "host/record_command.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

#include "host/record_fixes.h"
#include "host/saved_track.h"
#include "host/summary.h"
#include "host/text.h"

namespace host {
namespace {

constexpr int kDone = 0, kFailed = 1;

struct Arguments {
    std::string file;
    std::string device = DefaultDeviceFolder().string();
    std::string mode = "auto";
    unsigned codePage = 65001;
    bool noOverwrite = false;
    bool noSave = false;
    RecordingSettings settings;  // completed from the words above
};

int Fail(const std::string& message) {
    std::cout.flush();
    std::cerr << "qtrace record: " << message << '\n';
    return kFailed;
}

std::vector<std::string> NewFiles(const DeviceFolder& device, const std::vector<std::string>& before) {
    const std::vector<std::string> now = device.TrackFiles();
    std::vector<std::string> fresh;
    std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(fresh));
    return fresh;
}

// The library reports success for some writes that failed, so the file itself is asked.
int CheckAndPrint(const DeviceFolder& device, const std::string& fileName, std::uint64_t expected) {
    const auto track = ReadSavedTrack(device, fileName);
    if (!track) return Fail("the saved track " + fileName + " cannot be read back");
    PrintSavedTrack(*track);
    if (track->pointsReadBack == expected && track->points == expected) return kDone;
    return Fail("the saved track should hold " + Counted(expected, "point", "points") + ", but " +
                std::to_string(track->pointsReadBack) + " can be read back");
}

int SaveAndCheck(const DeviceFolder& device, LiveRecording& recording, const std::vector<std::string>& before) {
    const std::string kept = "; the recording itself is kept in " + device.Recording().string();
    const std::uint64_t expected = recording.PointsToSave();
    const auto earlier = NewFiles(device, before);  // saved while recording
    for (const std::string& fileName : earlier)
        if (const auto track = ReadSavedTrack(device, fileName)) PrintSavedTrack(*track);
    if (const auto problem = recording.Save()) return Fail("not saved: " + *problem + kept);
    const auto all = NewFiles(device, before);
    if (all.size() == earlier.size())
        return Fail("not saved: nothing was written to " + device.Tracks().string() + kept);
    const int result = CheckAndPrint(device, all.back(), expected);
    return result == kDone ? kDone : Fail("the save is not complete" + kept);
}

// What there is to say when the input gave no point. Having been stopped before the first one is no failure.
int NothingRecorded(const std::string& name, const RecordedInput& read) {
    const std::string refused = RefusedByReason(read.nmea);
    const int failed = read.nmea.fixes == 0
                           ? Fail("no usable fix in " + name + (refused.empty() ? "" : " (" + refused + ")"))
                           : Fail("none of " + Counted(read.nmea.fixes, "fix", "fixes") +
                                  " became a point: too few, too near to each other, or the recording is full");
    return read.end == Input::Got::Stopped ? kDone : failed;
}

int Conclude(const DeviceFolder& device, LiveRecording& recording, const Arguments& arguments,
             const std::vector<std::string>& before) {
    const int saved = arguments.settings.save ? SaveAndCheck(device, recording, before) : kDone;
    if (recording.WasFull())
        return Fail("the recording is full: it takes no more fixes unless it may overwrite");
    return saved;
}

int Record(const Arguments& arguments) {
    Input input(arguments.file);
    if (!input.IsOpen()) return Fail(input.Name() + " cannot be read: " + input.Problem());
    const DeviceFolder device(arguments.device);
    if (const auto problem = device.Prepare()) return Fail(*problem);
    const std::vector<std::string> before = device.TrackFiles();

    auto stop = std::make_unique<StopSignals>();
    LiveRecording recording(device, arguments.settings);
    if (const auto problem = recording.Open()) return Fail(*problem);
    if (recording.PointsBefore() != 0)
        std::cerr << "continuing a recording of " << Counted(recording.PointsBefore(), "point", "points")
                  << '\n';
    const RecordedInput read = RecordFixes(input, recording, *stop);
    recording.Stop();
    stop.reset();

    PrintInput(input.Name(), read.nmea);
    PrintRecording(recording, arguments.settings);
    const bool broken = read.end == Input::Got::Error;
    if (broken) Fail(input.Name() + " cannot be read on: " + input.Problem());
    if (recording.PointsAdded() == 0) return NothingRecorded(input.Name(), read);
    const int result = Conclude(device, recording, arguments, before);
    return broken ? kFailed : result;
}

EnumRecTrack ModeOf(const std::string& word) {
    return word == "time" ? RecTrackByTime : word == "distance" ? RecTrackByDist : RecTrackAuto;
}

void CheckAndRecord(Arguments& arguments, int& exitCode) {
    if (arguments.file.empty()) throw CLI::RequiredError("FILE");
    if (arguments.device.empty()) throw CLI::RequiredError("--device, as there is no home folder: it");
    if (!SetAnsiCodePage(arguments.codePage))
        throw CLI::ValidationError("--code-page", std::to_string(arguments.codePage) + " is not known");
    arguments.settings.mode = ModeOf(arguments.mode);
    arguments.settings.overwrite = !arguments.noOverwrite;
    arguments.settings.save = !arguments.noSave;
    exitCode = Record(arguments);
}

void AddOptions(CLI::App& command, Arguments& arguments) {
    RecordingSettings& settings = arguments.settings;
    auto* file = command.add_option("FILE", arguments.file, "NMEA 0183 log or device; - is standard input");
    command.add_option("--nmea", arguments.file, "The same, as an option")->type_name("FILE")->excludes(file);
    file->type_name("");
    command.add_option("--device", arguments.device, "Folder of the recording and the saved tracks")
        ->type_name("DIR")
        ->capture_default_str();
    command.add_option("--mode", arguments.mode, "What makes a fix a point; auto: whichever comes first")
        ->check(CLI::IsMember({"time", "distance", "auto"}).description(""))
        ->type_name("time|distance|auto")
        ->capture_default_str();
    command.add_option("--distance", settings.distance, "Metres between points")
        ->check(CLI::Range(1, 1'000'000).description(""))
        ->capture_default_str();
    command.add_option("--time", settings.time, "Seconds between points")
        ->check(CLI::Range(1, 86'400).description(""))
        ->capture_default_str();
    command.add_option("--code-page", arguments.codePage, "Code page of names and paths")
        ->capture_default_str();
    command.add_flag("--no-overwrite", arguments.noOverwrite,
                     "Stop at 10000 points instead of replacing the oldest");
    command.add_flag("--no-save", arguments.noSave, "Leave the recording as it is: save no track");
}

}  // namespace

void AddRecordCommand(CLI::App& program, int& exitCode) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = *program.add_subcommand("record", "Record the fixes of an NMEA 0183 log or receiver");
    command.footer(
        "A recording that is in the device folder already is continued. At the end, on Ctrl-C and on SIGTERM "
        "the whole\n"
        "recording is saved as a track. Without a usable fix nothing is saved, and the exit code is 1.\n"
        "Points go to storage 60 at a time (30 by distance, a minute's worth by time): a power cut costs no "
        "more.");
    AddOptions(command, *arguments);
    command.callback([arguments, &exitCode] { CheckAndRecord(*arguments, exitCode); });
}

}  // namespace host
