// `qtrace reverse`: a track with its points in the other order; their times stay with them.
#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/foreign_content.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/new_track.h"

namespace host {
namespace {

struct Arguments {
    std::string name, as;
    bool force = false;
};

int Fail(const std::string& message) { return host::Fail("reverse", message); }

int MakeCopy(const Library& library, const StoredTrack& reversed, const std::string& wanted) {
    const auto name = NewTrackName(library, "reverse", wanted);
    if (!name) return kFailed;
    if (const auto problem = StorePoints(library, reversed.points, *name, reversed)) return Fail(*problem);
    std::cout << ShownName(*library.Find(*name)) << " holds the track reversed\n";
    return kDone;
}

// The reversed track is a file of its own until it is read back; only then it takes the other's place. So one
// of the two is whole at any time.
int ReverseInPlace(const Library& library, CTrackProxy& track, const StoredTrack& reversed) {
    const std::string shown = ShownName(track), file = track.GetTrkFileName();
    const std::string name = library.FreeName(reversed.name);
    if (const auto problem = StorePoints(library, reversed.points, name, reversed))
        return Fail(*problem + "; " + shown + " is as it was");
    if (const auto problem = DeleteTrack(library, track)) {
        DeleteTrack(library, *library.Find(name));
        return Fail(*problem + "; it is as it was");
    }
    CTrackProxy& copy = *library.Find(name);
    copy.SetTrkFileName(file.c_str());
    const auto problem =
        ChangeHeader(library, copy, [&reversed](CTrackProxy& t) { t.SetName(reversed.name.c_str()); });
    if (problem || copy.GetTrkFileName() != file)
        return Fail("the reversed track is " + Utf8Of(library.FileOf(copy)) +
                    ", since it could not be renamed");
    std::cout << shown << " is reversed\n";
    return kDone;
}

int Reverse(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    CTrackProxy* track = TrackNamed(library, arguments.name);
    if (track == nullptr) return FailForName("reverse", arguments.name);
    auto stored = ReadStoredTrack(track->GetTrackPath());
    if (!stored) return Fail(Utf8Of(library.FileOf(*track)) + " cannot be read any more");
    std::reverse(stored->points.begin(), stored->points.end());
    if (!arguments.as.empty()) return MakeCopy(library, *stored, arguments.as);
    if (IsKeptForForeignContent(library, *track, "reverse", arguments.force)) return kFailed;
    return ReverseInPlace(library, *track, *stored);
}

}  // namespace

void AddReverseCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "reverse", "Turn the order of a track's points round");
    command.add_option("NAME", arguments->name, "The track")->type_name("")->required();
    command.add_option("--as", arguments->as, "Leave the track as it is and make a new one of this name")
        ->type_name("NEW");
    command.add_flag("--force", arguments->force, kForceHelp);
    command.callback([arguments, &program] { program.exitCode = Reverse(*arguments, program.settings); });
}

}  // namespace host
