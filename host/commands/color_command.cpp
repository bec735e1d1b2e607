// `qtrace color`: another color for a track.
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/tracks/foreign_content.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/stored_track.h"

namespace host {
namespace {

struct Arguments {
    std::string name, color;
    bool force = false;
};

int SetColor(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    CTrackProxy* track = TrackNamed(library, arguments.name);
    if (track == nullptr) return FailForName("color", arguments.name);
    if (IsKeptForForeignContent(library, *track, "color", arguments.force)) return kFailed;
    const unsigned color = ColorValue(arguments.color);
    const auto problem = ChangeHeader(library, *track, [color](CTrackProxy& t) { t.SetColor(color); });
    if (problem) return Fail("color", *problem);
    std::cout << ShownName(*track) << " is " << ColorText(color) << '\n';
    return kDone;
}

}  // namespace

void AddColorCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "color", "Give a track another color");
    command.add_option("NAME", arguments->name, "The track")->type_name("")->required();
    command.add_option("RRGGBB", arguments->color, "Red, green and blue, as in ff8000")
        ->type_name("")
        ->required()
        ->check(CLI::Validator(CheckColor, ""));
    command.add_flag("--force", arguments->force, kForceHelp);
    command.callback([arguments, &program] { program.exitCode = SetColor(*arguments, program.settings); });
}

}  // namespace host
