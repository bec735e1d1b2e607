// `qtrace map`: saved tracks as one page with everything in it, or as a picture.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "host/page/drawn_track.h"
#include "host/page/map_options.h"
#include "host/page/map_svg.h"
#include "host/page/web_page.h"
#include "host/program.h"
#include "host/text/extension.h"
#include "host/text/output_file.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/library.h"
#include "host/tracks/named_tracks.h"

namespace host {
namespace {

struct Arguments {
    std::vector<std::string> names;
    std::string output;
    std::string format;  // "html", "svg" or empty: by the output's extension
    MapOptions options;
};

int Fail(const std::string& message) { return host::Fail("map", message); }

// The tracks that are named, each once; all that are shown when none is.
std::optional<std::vector<CTrackProxy*>> TracksAskedFor(const Library& library,
                                                        const std::vector<std::string>& names) {
    std::vector<CTrackProxy*> tracks;
    for (const std::string& name : names) {
        CTrackProxy* track = TrackNamed(library, name);
        if (track == nullptr) {
            FailForName("map", name);
            return std::nullopt;
        }
        if (std::find(tracks.begin(), tracks.end(), track) == tracks.end()) tracks.push_back(track);
    }
    if (!names.empty()) return tracks;
    for (CTrackProxy* track : library.Tracks())
        if (track->GetVisible()) tracks.push_back(track);
    if (!tracks.empty()) return tracks;
    Fail(library.Tracks().empty() ? "the library holds no track"
                                  : "no track is shown; name the tracks to draw");
    return std::nullopt;
}

// Tracks that cannot be drawn are told of; the others are drawn.
std::vector<DrawnTrack> Read(const std::vector<CTrackProxy*>& tracks) {
    std::vector<DrawnTrack> drawn;
    for (CTrackProxy* track : tracks)
        if (auto read = ReadDrawnTrack(*track))
            drawn.push_back(std::move(*read));
        else
            Fail(ToUtf8(track->GetName()) + " holds no point that can be drawn");
    return drawn;
}

std::string Page(const std::string& title, const std::vector<DrawnTrack>& tracks, const MapOptions& options) {
    Json json = Json::array();
    for (const DrawnTrack& track : tracks) json.push_back(DrawnTrackJson(track));
    return WebPage({title, false, TilesOf(options)}, json);
}

int Draw(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    const auto tracks = TracksAskedFor(library, arguments.names);
    if (!tracks) return kFailed;
    const std::vector<DrawnTrack> drawn = Read(*tracks);
    if (drawn.empty()) return kFailed;
    std::string title = arguments.options.title;
    if (title.empty()) title = drawn.size() == 1 ? drawn[0].name : "Tracks";
    OutputFile output(arguments.output, true);
    output.Write(arguments.format == "svg" ? MapSvg(title, drawn) : Page(title, drawn, arguments.options));
    if (const auto problem = output.Finish()) return Fail(*problem);
    return drawn.size() == tracks->size() ? kDone : kFailed;
}

// By the extension, in any letter case; a page where there is none, as on standard output.
std::string FormatOf(const std::string& output) {
    const std::string extension = ExtensionOf(PathOf(output));
    if (extension == ".svg") return "svg";
    if (extension == ".html" || extension == ".htm" || extension.empty()) return "html";
    throw CLI::ValidationError("--output", output + " is neither .html nor .svg; --format says which to write");
}

}  // namespace

void AddMapCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "map", "Draw saved tracks as a page or a picture");
    command.footer(
        "The page holds everything it needs and works without a network. Without a NAME all tracks that are\n"
        "shown are drawn.");
    command.add_option("NAME", arguments->names, "Tracks to draw")->type_name("")->configurable(false);
    command.add_option("-o,--output", arguments->output, "File to write, .html or .svg; - is standard output")
        ->type_name("FILE")
        ->required()
        ->configurable(false);
    command.add_option("--format", arguments->format, "What to write, whatever the file is called")
        ->type_name("html|svg")
        ->check(CLI::IsMember({"html", "svg"}).description(""));
    AddMapOptions(command, arguments->options);
    command.callback([arguments, &program] {
        if (arguments->format.empty()) arguments->format = FormatOf(arguments->output);
        program.exitCode = Draw(*arguments, program.settings);
    });
}

}  // namespace host
