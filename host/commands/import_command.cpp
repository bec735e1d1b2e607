// `qtrace import`: GPX files of other programs become tracks of the library. The files themselves are only
// read.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/import_report.h"
#include "host/tracks/library.h"
#include "host/tracks/same_track.h"
#include "host/tracks/track_name.h"

namespace host {
namespace {

struct Arguments {
    std::vector<std::string> files;
    std::string name;
    bool again = false;
    bool asJson = false;
};

// The name that a track asks for: the option's, its own, or that of its file.
std::string WantedName(const Arguments& arguments, const std::string& file, const GpxTrack& track) {
    if (!arguments.name.empty()) return arguments.name;
    if (!track.name.empty()) return track.name;
    return file == "-" ? "track" : Utf8Of(PathOf(file).stem());
}

void FillTrack(CTrack& track, const GpxTrack& read) {
    if (read.color) track.SetColor(*read.color);
    for (const TckPt& point : read.points) track.AppendPt(point, false);
}

void StoreTrack(const Library& library, const GpxTrack& read, ImportedTrack& report) {
    const TrackName name = MakeTrackName(report.wanted);
    const std::string free = library.FreeName(name.text.empty() ? "track" : name.text);
    CTrack track;
    FillTrack(track, read);
    track.SetName(free.c_str());
    if (const auto problem = library.Store(track))
        report.problem = *problem;
    else
        report.name = ToUtf8(free);
}

std::uint64_t TimesBack(const std::vector<TckPt>& points) {
    std::uint64_t count = 0;
    for (std::size_t i = 1; i < points.size(); ++i) count += points[i].lTime < points[i - 1].lTime;
    return count;
}

ImportedTrack ImportTrack(const Library& library, const Arguments& arguments, const std::string& file,
                          const GpxTrack& read) {
    ImportedTrack report;
    report.wanted = WantedName(arguments, file, read);
    report.points = read.points.size();
    report.segments = read.segments;
    report.badPositions = read.badPositions;
    report.badTimes = read.badTimes;
    report.badNumbers = read.badNumbers;
    report.timesBack = TimesBack(read.points);
    CTrackProxy* same = arguments.again || read.points.empty() ? nullptr : FindSameTrack(library, read.points);
    if (read.points.empty())
        report.skipped = "it has no points";
    else if (same != nullptr)
        report.skipped =
            "the library has its points already, as " + ToUtf8(same->GetName()) + "; --again imports it anyhow";
    else
        StoreTrack(library, read, report);
    return report;
}

ImportedFile ImportFile(const Library& library, const Arguments& arguments, const std::string& name) {
    ImportedFile file;
    file.name = name == "-" ? "standard input" : name;
    FileReader reader(name);
    if (!reader.Problem().empty()) {
        file.problem = reader.Problem();
        return file;
    }
    file.outcome = ReadGpx(reader, [&](const GpxTrack& track) {
        file.tracks.push_back(ImportTrack(library, arguments, name, track));
    });
    file.problem = ProblemOf(file);
    return file;
}

void SayWhatFailed(const ImportedFile& file) {
    for (const ImportedTrack& track : file.tracks)
        if (!track.problem.empty())
            Fail("import", file.name + ": " + track.wanted + " is not imported: " + track.problem);
    if (!file.problem.empty()) Fail("import", file.name + ": " + file.problem);
}

int Import(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    std::vector<ImportedFile> files;
    int result = kDone;
    for (const std::string& name : arguments.files) {
        files.push_back(ImportFile(library, arguments, name));
        if (!arguments.asJson) PrintImport(files.back());
        SayWhatFailed(files.back());
        if (!files.back().IsGood()) result = kFailed;
    }
    if (arguments.asJson) PrintImportAsJson(files);
    return result;
}

}  // namespace

void AddImportCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "import", "Take tracks out of GPX files into the library");
    command.add_option("FILE", arguments->files, "GPX files, which stay as they are; - is standard input")
        ->type_name("FILE...")
        ->required()
        ->configurable(false);
    command.add_option("--name", arguments->name, "Name of the track, instead of the one in the file");
    command.add_flag("--again", arguments->again, "Import also what the library has already");
    command.add_flag("--json", arguments->asJson, "Say it as JSON");
    command.footer(
        "Each track of a file becomes one of the library, its segments joined. Of a damaged file all points "
        "in\n"
        "front of the damage are taken, and the exit code is 1; the other files are imported all the same.");
    command.callback([arguments, &program] { program.exitCode = Import(*arguments, program.settings); });
}

}  // namespace host
