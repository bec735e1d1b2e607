#include "host/tracks/visibility.h"

#include <iostream>
#include <memory>
#include <vector>

#include <CLI/App.hpp>

#include "host/text/text.h"
#include "host/tracks/foreign_content.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/stored_track.h"

namespace host {
namespace {

struct Arguments {
    std::vector<std::string> names;
    bool force = false;
};

bool IsAlready(CTrackProxy& track, bool visible) {
    const auto stored = ReadStoredTrack(track.GetTrackPath());
    return stored && stored->visible == visible;
}

bool Change(const Library& library, CTrackProxy& track, const std::string& command, bool visible, bool force) {
    if (!IsAlready(track, visible)) {
        if (IsKeptForForeignContent(library, track, command, force)) return false;
        const auto problem = ChangeHeader(library, track, [visible](CTrackProxy& t) { t.SetVisible(visible); });
        if (problem) {
            Fail(command, *problem);
            return false;
        }
    }
    std::cout << ShownName(track) << (visible ? " is shown\n" : " is hidden\n");
    return true;
}

// The library shows ten tracks at most, whatever their files say.
void TellOfTheLimit(const Library& library, const std::vector<std::string>& files) {
    library.Manager().RefreshFilelist();
    for (const std::string& file : files) {
        CTrackProxy* track = library.Manager().GetTrackByFile(file);
        if (track == nullptr || track->GetVisible()) continue;
        std::cout.flush();
        std::cerr << ShownName(*track)
                  << " will appear once others are hidden: ten tracks are shown at most, in the order of their "
                     "files\n";
    }
}

int ChangeAll(const Arguments& arguments, const HostSettings& settings, const std::string& command,
              bool visible) {
    const Library library(settings);
    const auto tracks = TracksNamed(library, command, arguments.names);
    if (!tracks) return kFailed;
    int result = kDone;
    std::vector<std::string> changed;
    for (CTrackProxy* track : *tracks) {
        if (Change(library, *track, command, visible, arguments.force))
            changed.push_back(track->GetTrkFileName());
        else
            result = kFailed;
    }
    if (visible) TellOfTheLimit(library, changed);
    return result;
}

}  // namespace

void AddVisibilityCommand(Program& program, const std::string& name, const std::string& help, bool visible) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, name, help);
    command.add_option("NAME", arguments->names, "The tracks")->type_name("")->required();
    command.add_flag("--force", arguments->force, kForceHelp);
    command.callback([arguments, name, visible, &program] {
        program.exitCode = ChangeAll(*arguments, program.settings, name, visible);
    });
}

}  // namespace host
