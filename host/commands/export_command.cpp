// `qtrace export`: stored tracks as documents for other programs.
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/choice.h"
#include "host/text/extension.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/library.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/track_document.h"

namespace host {
namespace {

using Writer = void (*)(const std::vector<DocumentTrack>&, const TextSink&);

const std::map<std::string, Writer> kWriters = {
    {"gpx", WriteGpx}, {"geojson", WriteGeoJson}, {"kml", WriteKml}, {"csv", WriteCsv}};

struct Arguments {
    std::vector<std::string> words;  // names of tracks, then the file
    std::string format;
    bool force = false;
};

int Fail(const std::string& message) { return host::Fail("export", message); }

// The writer that the option names, else the file's extension; standard output is GPX unless told otherwise.
Writer WriterFor(const Arguments& arguments) {
    std::string format = arguments.format;
    if (format.empty() && arguments.words.back() == "-") format = "gpx";
    if (format.empty()) {
        const std::string extension = ExtensionOf(PathOf(arguments.words.back()));
        format = extension.empty() ? "" : extension.substr(1);
        if (format == "json") format = "geojson";
    }
    const auto writer = kWriters.find(format);
    return writer == kWriters.end() ? nullptr : writer->second;
}

std::optional<DocumentTrack> ReadTrack(CTrackProxy& track) {
    Points points;
    track.GetPtList(points);
    if (points.empty()) return std::nullopt;
    return DocumentTrack{ToUtf8(track.GetName()), track.GetColor(), {Segment(points.begin(), points.end())}};
}

int Export(const Arguments& arguments, const HostSettings& settings, Writer write) {
    const Library library(settings);
    std::vector<DocumentTrack> tracks;
    for (std::size_t i = 0; i + 1 < arguments.words.size(); ++i) {
        CTrackProxy* track = TrackNamed(library, arguments.words[i]);
        if (track == nullptr) return FailForName("export", arguments.words[i]);
        std::optional<DocumentTrack> read = ReadTrack(*track);
        if (!read) return Fail("the points of " + arguments.words[i] + " cannot be read");
        tracks.push_back(std::move(*read));
    }
    OutputFile file(arguments.words.back(), arguments.force);
    if (!file.Problem()) write(tracks, file.Sink());
    const auto problem = file.Finish();
    return problem ? Fail(*problem) : kDone;
}

void CheckWords(const Arguments& arguments) {
    if (arguments.words.size() < 2)
        throw CLI::ValidationError("NAME and FILE are needed: the last word is the file");
    if (WriterFor(arguments) == nullptr)
        throw CLI::ValidationError(arguments.words.back() +
                                   ": no format of that extension; --format says which it is");
}

}  // namespace

void AddExportCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command =
        AddCommand(program, "export", "Write tracks as GPX, GeoJSON, KML or CSV for other programs");
    command.add_option("NAME", arguments->words, "Names of tracks, then the file; - is standard output")
        ->type_name("NAME... FILE")
        ->required()
        ->configurable(false);
    command
        .add_option("--format", arguments->format, "What to write, where the file's extension does not tell")
        ->type_name("gpx|geojson|kml|csv")
        ->check(CLI::IsMember(&kWriters).description(""));
    command.add_flag("--force", arguments->force, "Replace the file if it is there");
    command.footer("The file appears whole or not at all.");
    command.callback([arguments, &program] {
        CheckWords(*arguments);
        program.exitCode = Export(*arguments, program.settings, WriterFor(*arguments));
    });
}

}  // namespace host
