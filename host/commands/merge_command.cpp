// `qtrace merge`: several tracks one behind the other, as a new one.
#include <algorithm>
#include <iostream>
#include <memory>
#include <vector>

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
    std::vector<std::string> names;
    std::string as;
    bool deleteOriginals = false, force = false;
};

int Fail(const std::string& message) { return host::Fail("merge", message); }

// The time of the first point that knows one; 0 when none does.
long StartOf(const StoredTrack& track) {
    const auto first = std::find_if(track.points.begin(), track.points.end(),
                                    [](const TckPt& point) { return point.lTime != 0; });
    return first == track.points.end() ? 0 : first->lTime;
}

long EndOf(const StoredTrack& track) {
    const auto last = std::find_if(track.points.rbegin(), track.points.rend(),
                                   [](const TckPt& point) { return point.lTime != 0; });
    return last == track.points.rend() ? 0 : last->lTime;
}

// Those that know no time come first, as the user named them: behind others, their points would be read with
// the time of the last one before them.
void SortByTime(std::vector<StoredTrack>& tracks) {
    std::stable_sort(tracks.begin(), tracks.end(), [](const StoredTrack& a, const StoredTrack& b) {
        const long first = StartOf(a), second = StartOf(b);
        return second != 0 && (first == 0 || first < second);
    });
}

void TellOfOverlaps(const std::vector<StoredTrack>& tracks) {
    for (std::size_t i = 1; i < tracks.size(); ++i)
        if (StartOf(tracks[i]) != 0 && StartOf(tracks[i]) < EndOf(tracks[i - 1]))
            std::cerr << "note: " << ShownName(tracks[i].name) << " starts before "
                      << ShownName(tracks[i - 1].name) << " has ended\n";
}

std::optional<std::vector<StoredTrack>> ReadAll(const Library& library,
                                                const std::vector<CTrackProxy*>& tracks) {
    std::vector<StoredTrack> read;
    for (CTrackProxy* track : tracks) {
        auto stored = ReadStoredTrack(track->GetTrackPath());
        if (!stored) {
            Fail(Utf8Of(library.FileOf(*track)) + " cannot be read any more");
            return std::nullopt;
        }
        read.push_back(std::move(*stored));
    }
    return read;
}

int DeleteOriginals(const Library& library, const std::vector<CTrackProxy*>& tracks) {
    int result = kDone;
    for (CTrackProxy* track : tracks) {
        const std::string name = ShownName(*track);
        if (const auto problem = DeleteTrack(library, *track))
            result = Fail(*problem);
        else
            std::cout << "Deleted " << name << '\n';
    }
    return result;
}

int Merge(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    const auto tracks = TracksNamed(library, "merge", arguments.names);
    if (!tracks) return kFailed;
    if (tracks->size() < 2) return Fail("these are one and the same track");
    for (CTrackProxy* track : *tracks)
        if (arguments.deleteOriginals && IsKeptForForeignContent(library, *track, "merge", arguments.force))
            return kFailed;
    const auto name = NewTrackName(library, "merge", arguments.as);
    auto read = ReadAll(library, *tracks);
    if (!name || !read) return kFailed;
    const StoredTrack like = read->front();
    SortByTime(*read);
    TellOfOverlaps(*read);
    Points points;
    for (const StoredTrack& track : *read)
        points.insert(points.end(), track.points.begin(), track.points.end());
    if (const auto problem = StorePoints(library, points, *name, like)) return Fail(*problem);
    std::cout << ShownName(*library.Find(*name)) << " holds " << Counted(points.size(), "point", "points")
              << " of " << Counted(tracks->size(), "track", "tracks") << '\n';
    return arguments.deleteOriginals ? DeleteOriginals(library, *tracks) : kDone;
}

}  // namespace

void AddMergeCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command =
        AddCommand(program, "merge", "Put tracks one behind the other, in time order, as a new one");
    command.add_option("NAME", arguments->names, "The tracks; the first gives the color")
        ->type_name("")
        ->required()
        ->expected(2, -1);
    command.add_option("--as", arguments->as, "Name of the new track")->type_name("NEW")->required();
    command.add_flag("--delete", arguments->deleteOriginals, "Delete the tracks once the new one is whole");
    command.add_flag("--force", arguments->force, kForceHelp);
    command.callback([arguments, &program] { program.exitCode = Merge(*arguments, program.settings); });
}

}  // namespace host
