// `qtrace record`: the fixes of a receiver, of the GPS daemon or of a file become a recording, and the
// recording a saved track. Its options: record_options.cpp. Reading: record_fixes.cpp. Saving: saving.cpp.

#include <chrono>
#include <iostream>
#include <memory>
#include <variant>

#include <CLI/App.hpp>

#include "host/page/recording_page.h"
#include "host/program.h"
#include "host/recording/record_fixes.h"
#include "host/recording/record_options.h"
#include "host/recording/recorder_lock.h"
#include "host/recording/saving.h"
#include "host/recording/summary.h"
#include "host/source/open_source.h"
#include "host/text/display_width.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

void Tell(const std::string& message) { std::cerr << Printable(message) + '\n'; }

int Fail(const std::string& message) { return host::Fail("record", message); }

using Page = std::unique_ptr<RecordingPage>;

// What a run has besides the recording, and longer.
struct Run {
    const RecordArguments& arguments;
    const HostSettings& settings;
    const std::string& name;  // of the track, in the code page
    FixSource& source;
    StatusLine& line;
    StopSignals& stop;
    Page page;               // when one is asked for
    bool pageStays = false;  // behind the recording
};

// A log can be read once more. A receiver is recorded whatever happens: behind what is there.
int BeginNothingNew(const std::string& problem, const Run& run) {
    if (!run.source.IsLive()) return Fail("no new recording is begun: " + problem);
    Tell("no new recording is begun, the one that is there is continued: " + problem);
    return kDone;
}

// What could not be cleared on disk is opened again as it is there.
int ClearFor(const Run& run, LiveRecording& recording) {
    const auto problem = recording.Clear();
    if (!problem) return kDone;
    const auto reopening = recording.Open(run.stop);
    if (reopening && !run.stop.Requested()) return Fail(*reopening);
    return BeginNothingNew(*problem, run);
}

// The recording that is there becomes a track, unless it is one, and only then gives way.
int BeginNew(const Run& run, LiveRecording& recording) {
    const std::string old =
        "the recording that was there, " + Counted(recording.PointsBefore(), "point", "points");
    if (recording.IsSaved()) {
        Tell(old + ", is saved already");
    } else if (!run.arguments.noSave) {
        const auto saved = recording.Save("");
        if (const auto* problem = std::get_if<std::string>(&saved))
            return BeginNothingNew("it cannot be saved: " + *problem, run);
        Tell(old + ", is saved as " + Utf8Of(std::get<SavedTrack>(saved).file));
    } else {
        Tell(old + ", is in no track and gives way, as --new and --no-save ask");
    }
    return ClearFor(run, recording);
}

// What is saved is finished; what is not was cut off by a power cut, or its save failed.
int Begin(const Run& run, LiveRecording& recording) {
    if (recording.PointsBefore() == 0) return kDone;
    if (run.arguments.startNew || (!run.arguments.goOn && recording.IsSaved())) return BeginNew(run, recording);
    Tell("continuing a recording of " + Counted(recording.PointsBefore(), "point", "points"));
    return kDone;
}

// What there is to say when the input gave no point. Having been stopped before the first one is no failure.
int NothingRecorded(const FixSource& source, const LiveRecording& recording, const RecordedInput& read) {
    if (recording.WasFull() && source.Counts().fixes != 0)
        return Fail("the recording is full: it takes no more fixes unless it may overwrite");
    if (read.end == FixSource::Got::Stopped) return kDone;
    if (recording.Points() != 0 && !recording.IsSaved())
        Tell(Counted(recording.Points(), "point", "points") + " of before are in no track yet: qtrace save");
    const SourceCounts counts = source.Counts();
    if (counts.fixes == 0)
        return Fail("no usable fix in " + source.Name() +
                    (counts.refused.empty() ? "" : " (" + counts.refused + ")"));
    return Fail("none of " + Counted(counts.fixes, "fix", "fixes") +
                " became a point: too few, too near to each other, or the recording is full");
}

int SaveAll(const DeviceFolder& device, LiveRecording& recording, const std::string& name) {
    for (const SavedTrack& track : recording.AutomaticSaves()) PrintSavedTrack(track);
    return SaveAndPrint("record", device, recording, name);
}

int Conclude(const DeviceFolder& device, LiveRecording& recording, const RecordArguments& arguments,
             const std::string& name) {
    int result = arguments.noSave ? kDone : SaveAll(device, recording, name);
    const bool isSaved = !arguments.noSave && result == kDone;
    if (recording.Troubles() != 0) result = kFailed;
    if (const auto problem = recording.Check())
        result = Fail(*problem + (isSaved ? "" : "; what it lacks is lost"));
    if (recording.WasFull())
        result = Fail("the recording is full: it takes no more fixes unless it may overwrite");
    return result;
}

// Null when none is asked for. Otherwise says why there is none.
std::variant<Page, std::string> OpenPage(const RecordArguments& arguments, const HostSettings& settings) {
    const auto port = ServePort(arguments);
    if (!port) return Page();
    auto page = std::make_unique<RecordingPage>(settings);
    if (const auto problem = page->Start(*port)) return *problem;
    Tell("the recording is shown at " + page->Url());
    return page;
}

// Fixes of a receiver that wait for their time would be lost at a stop.
std::optional<std::string> WhyNotPaced(const RecordArguments& arguments, const FixSource& source) {
    if (!arguments.speed || !source.IsLive()) return std::nullopt;
    return "--speed replays a file; " + source.Name() + " comes at its own speed";
}

int SumUp(const DeviceFolder& device, LiveRecording& recording, const RecordedInput& read, Run& run) {
    PrintInput(run.source, read.gate);
    PrintRecording(recording, run.settings.record);
    const bool isBroken = read.end == FixSource::Got::Error;
    if (isBroken) Fail(run.source.Name() + " cannot be read on: " + run.source.Problem());
    run.pageStays = read.end != FixSource::Got::Stopped;
    const bool isLeftUnsaved =
        !run.pageStays && !run.arguments.noSave && recording.Points() != 0 && !recording.IsSaved();
    if (recording.PointsAdded() == 0 && !isLeftUnsaved) return NothingRecorded(run.source, recording, read);
    const int result = Conclude(device, recording, run.arguments, run.name);
    return isBroken ? kFailed : result;
}

// From the first fix to the save.
int RecordAndSave(const DeviceFolder& device, LiveRecording& recording, Run& run) {
    recording.Start(run.page ? run.page->Observer() : nullptr);
    const RecordedInput read = RecordFixes(run.source, recording, run.arguments, run.line, run.stop);
    recording.Stop();
    if (run.page) run.page->RecordingEnded();
    run.line.Clear();
    return SumUp(device, recording, read, run);
}

// The recording is closed, and free for the next recorder, when it returns.
int RecordInto(const DeviceFolder& device, Run& run) {
    if (const auto problem = device.Prepare()) return Fail(*problem);
    const RecorderLock lock(device);
    if (lock.Problem()) return Fail(*lock.Problem());
    LiveRecording recording(device, run.settings, !run.arguments.noSave,
                            [&run](const std::string& message) { run.line.Say(message); });
    if (const auto problem = recording.Open(run.stop)) return run.stop.Requested() ? kDone : Fail(*problem);
    if (const int result = Begin(run, recording); result != kDone) return result;
    auto served = OpenPage(run.arguments, run.settings);
    if (const auto* problem = std::get_if<std::string>(&served)) return Fail(*problem);
    run.page = std::move(std::get<Page>(served));
    return RecordAndSave(device, recording, run);
}

// The page outlives its input, so that what was saved can be looked at; a stop ends both.
void StayOpen(const RecordingPage& page, StopSignals& stop) {
    std::cout.flush();
    if (stop.Sleep({})) Tell("the page stays at " + page.Url() + " until Ctrl-C");
    while (stop.Sleep(std::chrono::hours(1))) continue;
}

int Record(const RecordArguments& arguments, const HostSettings& settings) {
    const auto name = NameToSave("record", arguments.saveAs, settings);
    if (!name) return kWrongUsage;
    StatusLine line("record");
    const auto opened = OpenSource(arguments, [&line](const std::string& message) { line.Say(message); });
    if (const auto* problem = std::get_if<std::string>(&opened)) return Fail(*problem);
    FixSource& source = *std::get<std::unique_ptr<FixSource>>(opened);
    if (const auto problem = WhyNotPaced(arguments, source)) {
        Fail(*problem);
        return kWrongUsage;
    }
    StopSignals stop;  // to the end: a signal asks for the save and must not cut it off
    Run run{arguments, settings, *name, source, line, stop, nullptr};
    const int result = RecordInto(DeviceFolder(settings), run);
    if (run.pageStays && run.page) StayOpen(*run.page, stop);
    return result;
}

constexpr const char* kFooter =
    "At the end, on Ctrl-C and on SIGTERM the whole recording is saved as a track, and the next run begins "
    "another.\n"
    "A recording that is not saved, after a power cut or a failed save, is continued, unless --new: then it is "
    "saved\n"
    "first, as a track of its own. When an input ends without a usable fix nothing is saved: exit code 1.\n"
    "A receiver or daemon that is not there is waited for, and so is one that goes away.\n"
    "Points go to storage 60 at a time (30 by distance, a minute's worth by time); those of a receiver wait 10 "
    "s\n"
    "at most, or what --write-after says: a power cut costs no more.\n"
    "With --serve the page stays when the input has ended, until Ctrl-C.";

}  // namespace

void AddRecordCommand(Program& program) {
    auto arguments = std::make_shared<RecordArguments>();
    CLI::App& command =
        AddCommand(program, "record", "Record the fixes of a receiver, the GPS daemon or a file");
    command.footer(kFooter);
    AddRecordOptions(command, *arguments, program.settings.record);
    command.callback([arguments, &program] { program.exitCode = Record(*arguments, program.settings); });
}

}  // namespace host
