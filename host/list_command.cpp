// `qtrace list`: the saved tracks.
#include <iostream>

#include "host/library.h"
#include "host/program.h"
#include "host/text.h"

namespace host {
namespace {

int List(const HostSettings& settings) {
    const Library library(settings);
    for (CTrackProxy* track : library.Tracks())
        std::cout << track->GetName() << "  " << DistanceText(track->GetLength()) << "  "
                  << UtcText(track->GetStartTime()) << '\n';
    return kDone;
}

}  // namespace

void AddListCommand(Program& program) {
    CLI::App& command = *program.app.add_subcommand("list", "List the saved tracks, newest first");
    command.callback([&program] { program.exitCode = List(program.settings); });
}

}  // namespace host
