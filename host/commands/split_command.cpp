// `qtrace split`: the pieces of a track as new ones. Where it is cut: host/tracks/split_track.h.
#include <iostream>
#include <memory>
#include <vector>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/duration.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/new_track.h"
#include "host/tracks/split_track.h"
#include "host/tracks/statistics_text.h"
#include "host/tracks/track_name.h"

namespace host {
namespace {

struct Arguments {
    std::string name;
    std::string gap = "30m";
    double distance = 0;  // [m] 0: not asked for
};

int Fail(const std::string& message) { return host::Fail("split", message); }

std::string CheckGap(const std::string& text) {
    constexpr std::int64_t kLongest = 366 * 86'400;  // [s]
    const std::int64_t seconds = ReadDuration(text).value_or(0);
    return seconds >= 1 && seconds <= kLongest ? "" : text + " is no time like 300, 5m or 1h30m";
}

// The track's name with the next number whose name is free.
std::string NumberedName(const Library& library, const std::string& name, int& number) {
    for (;;) {
        const std::string suffix = '_' + std::to_string(++number);
        const std::string numbered = CutName(name, kLongestName - suffix.size()) + suffix;
        if (library.FreeName(numbered) == numbered) return numbered;
    }
}

// All or none: a piece that cannot be stored takes those before it away again.
std::optional<std::string> StoreAll(const Library& library, const std::vector<Points>& pieces,
                                    const StoredTrack& whole, std::vector<std::string>& names) {
    int number = 0;
    for (const Points& piece : pieces) {
        const std::string name = NumberedName(library, whole.name, number);
        if (const auto problem = StorePoints(library, piece, name, whole)) {
            for (const std::string& stored : names) DeleteTrack(library, *library.Find(stored));
            return *problem + "; no piece was kept, the track is as it was";
        }
        names.push_back(name);
    }
    return std::nullopt;
}

int Split(const Arguments& arguments, const CutAt& where, const HostSettings& settings) {
    const Library library(settings);
    CTrackProxy* track = TrackNamed(library, arguments.name);
    if (track == nullptr) return FailForName("split", arguments.name);
    const auto whole = ReadStoredTrack(track->GetTrackPath());
    if (!whole) return Fail(Utf8Of(library.FileOf(*track)) + " cannot be read any more");
    const std::vector<Points> pieces = SplitPoints(whole->points, where);
    if (pieces.size() < 2) {
        std::cout << "nothing to split: " << ShownName(*track) << " has no such gap\n";
        return kDone;
    }
    std::vector<std::string> names;
    if (const auto problem = StoreAll(library, pieces, *whole, names)) return Fail(*problem);
    for (std::size_t i = 0; i < pieces.size(); ++i)
        std::cout << ShownName(*library.Find(names[i])) << "  " << Counted(pieces[i].size(), "point", "points")
                  << '\n';
    return kDone;
}

}  // namespace

void AddSplitCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "split", "Make new tracks of the pieces of one; it stays as it is");
    command.add_option("NAME", arguments->name, "The track")->type_name("")->required();
    auto* gap = command.add_option("--gap", arguments->gap, "Cut where so much time passes between two points")
                    ->type_name("SECONDS|5m|1h30m")
                    ->check(CLI::Validator(CheckGap, ""))
                    ->capture_default_str();
    auto* distance = command
                         .add_option("--distance", arguments->distance,
                                     "Cut where two points are so many metres apart; without --gap only there")
                         ->type_name("METRES")
                         ->check(CLI::Range(1.0, 1e8).description(""));
    command.callback([arguments, gap, distance, &program] {
        CutAt where;
        if (distance->count() != 0) where.distance = arguments->distance;
        if (gap->count() != 0 || !where.distance) where.gap = *ReadDuration(arguments->gap);
        program.exitCode = Split(*arguments, where, program.settings);
    });
}

}  // namespace host
