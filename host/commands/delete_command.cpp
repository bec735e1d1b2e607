// `qtrace delete`: tracks and their files, for good.
#include <iostream>
#include <memory>
#include <vector>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/confirm.h"
#include "host/text/text.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/new_track.h"

namespace host {
namespace {

struct Arguments {
    std::vector<std::string> names;
    bool yes = false;
};

std::string Question(const std::vector<CTrackProxy*>& tracks) {
    std::string names;
    for (CTrackProxy* track : tracks) names += (names.empty() ? "" : ", ") + ShownName(*track);
    return "Delete " + Counted(tracks.size(), "track", "tracks") + " for good: " + names + "?";
}

int Delete(const Arguments& arguments, const HostSettings& settings) {
    if (!arguments.yes && !CanAsk()) {
        Fail("delete", "there is no terminal to ask on; --yes deletes without asking");
        return kWrongUsage;
    }
    const Library library(settings);
    const auto tracks = TracksNamed(library, "delete", arguments.names);
    if (!tracks) return Fail("delete", "nothing was deleted");
    if (!arguments.yes && !Confirm(Question(*tracks))) return Fail("delete", "nothing was deleted");
    int result = kDone;
    for (CTrackProxy* track : *tracks) {
        const std::string name = ShownName(*track);
        if (const auto problem = DeleteTrack(library, *track))
            result = Fail("delete", *problem);
        else
            std::cout << "Deleted " << name << '\n';
    }
    return result;
}

}  // namespace

void AddDeleteCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "delete", "Delete tracks and their files");
    command.add_option("NAME", arguments->names, "The tracks")->type_name("")->required();
    command.add_flag("--yes,-y", arguments->yes, "Do not ask");
    command.callback([arguments, &program] { program.exitCode = Delete(*arguments, program.settings); });
}

}  // namespace host
