// `qtrace record`: NMEA 0183 from a file or a stream becomes a recording, and the recording a saved track.

#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <vector>

#include "host/choice.h"
#include "host/program.h"
#include "host/record_fixes.h"
#include "host/recorder_lock.h"
#include "host/saved_track.h"
#include "host/summary.h"
#include "host/text.h"

namespace host {
namespace {

struct Arguments {
    std::string file;
    bool noSave = false;
};

int Fail(const std::string& message) { return host::Fail("record", message); }

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
    const int saved = arguments.noSave ? kDone : SaveAndCheck(device, recording, before);
    if (recording.WasFull())
        return Fail("the recording is full: it takes no more fixes unless it may overwrite");
    return saved;
}

int Record(const Arguments& arguments, const HostSettings& settings) {
    Input input(arguments.file);
    if (!input.IsOpen()) return Fail(input.Name() + " cannot be read: " + input.Problem());
    const DeviceFolder device(settings);
    if (const auto problem = device.Prepare()) return Fail(*problem);
    const RecorderLock lock(device);
    if (lock.Problem()) return Fail(*lock.Problem());
    const std::vector<std::string> before = device.TrackFiles();

    auto stop = std::make_unique<StopSignals>();
    LiveRecording recording(device, settings, !arguments.noSave);
    if (const auto problem = recording.Open()) return Fail(*problem);
    if (recording.PointsBefore() != 0)
        std::cerr << "continuing a recording of " << Counted(recording.PointsBefore(), "point", "points")
                  << '\n';
    const RecordedInput read = RecordFixes(input, recording, *stop);
    recording.Stop();
    stop.reset();

    PrintInput(input.Name(), read.nmea);
    PrintRecording(recording, settings.record);
    const bool broken = read.end == Input::Got::Error;
    if (broken) Fail(input.Name() + " cannot be read on: " + input.Problem());
    if (recording.PointsAdded() == 0) return NothingRecorded(input.Name(), read);
    const int result = Conclude(device, recording, arguments, before);
    return broken ? kFailed : result;
}

const std::map<std::string, EnumRecTrack> kModes = {
    {"time", RecTrackByTime}, {"distance", RecTrackByDist}, {"auto", RecTrackAuto}};

void AddOptions(CLI::App& command, Arguments& arguments, RecordSettings& settings) {
    auto* file = command.add_option("FILE", arguments.file, "NMEA 0183 log or device; - is standard input");
    command.add_option("--nmea", arguments.file, "The same, as an option")->type_name("FILE")->excludes(file);
    file->type_name("")->configurable(false);
    AddChoice(command, "--mode", settings.mode, kModes, "time|distance|auto",
              "What makes a fix a point; auto: whichever comes first");
    command.add_option("--distance", settings.distance, "Metres between points")
        ->check(CLI::Range(1, 1'000'000).description(""))
        ->capture_default_str();
    command.add_option("--time", settings.time, "Seconds between points")
        ->check(CLI::Range(1, 86'400).description(""))
        ->capture_default_str();
    command.add_flag("--overwrite,!--no-overwrite", settings.overwrite,
                     "Replace the oldest points at 10000 points, or stop there");
    command.add_flag("--no-save", arguments.noSave, "Leave the recording as it is: save no track");
}

}  // namespace

void AddRecordCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command =
        *program.app.add_subcommand("record", "Record the fixes of an NMEA 0183 log or receiver");
    command.footer(
        "A recording that is in the device folder already is continued. At the end, on Ctrl-C and on SIGTERM "
        "the whole\n"
        "recording is saved as a track. Without a usable fix nothing is saved, and the exit code is 1.\n"
        "Points go to storage 60 at a time (30 by distance, a minute's worth by time): a power cut costs no "
        "more.");
    AddOptions(command, *arguments, program.settings.record);
    command.callback([arguments, &program] {
        if (arguments->file.empty()) throw CLI::RequiredError("FILE");
        program.exitCode = Record(*arguments, program.settings);
    });
}

}  // namespace host
