// `qtrace save`: the recording in the device folder becomes a track, without recording anything.
#include <filesystem>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/recording/recorder_lock.h"
#include "host/recording/recording_files.h"
#include "host/recording/saving.h"
#include "host/recording/status_line.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

struct Arguments {
    std::string name;  // UTF-8; empty: the time
    bool clear = false;
};

int Fail(const std::string& message) { return host::Fail("save", message); }

int SaveOpened(const Arguments& arguments, const DeviceFolder& device, LiveRecording& recording,
               const std::string& name) {
    if (recording.PointsBefore() == 0) return Fail("the recording in " + Utf8Of(device.Root()) + " is empty");
    const int saved = SaveAndPrint("save", device, recording, name);
    if (saved != kDone || !arguments.clear) return saved;
    const auto problem = recording.Clear();
    return problem ? Fail(*problem) : kDone;
}

int Save(const Arguments& arguments, const HostSettings& settings) {
    const auto name = NameToSave("save", arguments.name, settings);
    if (!name) return kWrongUsage;
    const DeviceFolder device(settings);
    std::error_code unreadable;
    if (!std::filesystem::exists(RingFileOf(device), unreadable))
        return Fail("there is no recording in " + Utf8Of(device.Root()));
    const RecorderLock lock(device);
    if (lock.Problem()) return Fail(*lock.Problem());
    StatusLine line("save");
    auto stop = std::make_unique<StopSignals>();
    LiveRecording recording(device, settings, true, [&line](const std::string& message) { line.Say(message); });
    if (const auto problem = recording.Open(*stop)) return Fail(stop->Requested() ? "stopped" : *problem);
    stop.reset();
    return SaveOpened(arguments, device, recording, *name);
}

}  // namespace

void AddSaveCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "save", "Save the recording as a track");
    command.footer(
        "The track is read back before anything is said. The recording stays, unless --clear, until the next "
        "one begins.");
    command.add_option("--as", arguments->name, "Name of the track")->type_name("NAME");
    command.add_flag("--clear", arguments->clear, "Then remove the recording, if the track is whole");
    command.callback([arguments, &program] { program.exitCode = Save(*arguments, program.settings); });
}

}  // namespace host
