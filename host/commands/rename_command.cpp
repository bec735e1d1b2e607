// `qtrace rename`: another name for a track and its file.
#include <iostream>
#include <memory>
#include <system_error>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/display_width.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/foreign_content.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/stored_track.h"
#include "host/tracks/track_name.h"

namespace fs = std::filesystem;

namespace host {
namespace {

struct Arguments {
    std::string from, to;
    bool force = false;
};

int Fail(const std::string& message) { return host::Fail("rename", message); }

// The new name may be the track's own, in other letters.
bool IsTakenByAnother(const Library& library, const CTrackProxy& track, const std::string& name) {
    const CTrackProxy* holder = library.Find(name);
    return holder != nullptr && holder != &track;
}

// Moves the file first: that takes no room, and can be undone without any.
std::optional<std::string> MoveFile(const Library& library, CTrackProxy& track, const std::string& name) {
    const fs::path from = library.FileOf(track);
    const fs::path to = from.parent_path() / PathOf(ToUtf8(name) + ".gpx");
    std::error_code unknown;
    if (to != from && fs::exists(to, unknown) && !fs::equivalent(to, from, unknown))
        return "there is a file " + Utf8Of(to) + " already";
    track.SetTrkFileName(name.c_str());
    if (fs::exists(to, unknown) && library.FileOf(track) == to) return std::nullopt;
    return Utf8Of(from) + " could not be renamed: " + WhyNotWritable(from.parent_path(), 0);
}

int Rename(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    CTrackProxy* track = TrackNamed(library, arguments.from);
    if (track == nullptr) return FailForName("rename", arguments.from);
    const TrackName name = MakeTrackName(arguments.to);
    if (name.text.empty()) return Fail("a track needs a name");
    const std::string shown = Printable(ToUtf8(name.text));
    if (IsTakenByAnother(library, *track, name.text))
        return Fail("there is a track named " + shown + " already");
    if (IsKeptForForeignContent(library, *track, "rename", arguments.force)) return kFailed;

    const std::string oldFile = track->GetTrkFileName();
    if (const auto problem = MoveFile(library, *track, name.text)) return Fail(*problem);
    const auto problem =
        ChangeHeader(library, *track, [&name](CTrackProxy& t) { t.SetName(name.text.c_str()); });
    if (problem) {
        track->SetTrkFileName(oldFile.c_str());
        return Fail(*problem + "; its file is " + Utf8Of(library.FileOf(*track)));
    }
    if (name.wasChanged) std::cerr << "the name was changed to " << shown << '\n';
    std::cout << "Renamed " << Printable(arguments.from) << " to " << shown << '\n';
    return kDone;
}

}  // namespace

void AddRenameCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "rename", "Give a track and its file another name");
    command.add_option("OLD", arguments->from, "The track")->type_name("")->required();
    command.add_option("NEW", arguments->to, "Its new name, of 32 bytes at most")->type_name("")->required();
    command.add_flag("--force", arguments->force, kForceHelp);
    command.callback([arguments, &program] { program.exitCode = Rename(*arguments, program.settings); });
}

}  // namespace host
