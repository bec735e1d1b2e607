// `qtrace info`: all that there is to know of a track, or of the library as a whole. What is computed:
// host/tracks/statistics.h.
#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/display_width.h"
#include "host/text/json.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/statistics_text.h"
#include "host/tracks/track_header.h"

namespace host {
namespace {

struct Arguments {
    std::string name;
    bool json = false;
};

Points PointsOf(CTrackProxy& track) {
    Points points;
    track.GetPtList(points);
    return points;
}

int TrackInfo(const Arguments& arguments, const Library& library) {
    CTrackProxy* track = TrackNamed(library, arguments.name);
    if (track == nullptr) return FailForName("info", arguments.name);
    const Points points = PointsOf(*track);
    if (points.empty()) return Fail("info", Utf8Of(library.FileOf(*track)) + " cannot be read any more");
    const Statistics statistics = ComputeStatistics(points);
    if (arguments.json) {
        Json json = {{"name", ToUtf8(track->GetName())},
                     {"file", Utf8Of(library.FileOf(*track))},
                     {"color", ColorText(track->GetColor())},
                     {"shown", track->GetVisible()}};
        json.update(StatisticsJson(statistics));
        PrintJson(json);
        return kDone;
    }
    std::cout << ShownName(*track) << '\n';
    PrintLabelled("file", Utf8Of(library.FileOf(*track)));
    PrintLabelled("color", ColorText(track->GetColor()));
    PrintLabelled("shown", track->GetVisible() ? "yes" : "no");
    PrintStatistics(statistics);
    return kDone;
}

// Of the headers of all tracks: a library of thousands is not read point by point.
struct Totals {
    std::uint64_t tracks = 0, shown = 0, unreadable = 0, points = 0;
    double length = 0;        // [m]
    long duration = 0;        // [s] of all tracks together
    long start = 0, end = 0;  // of the earliest and the latest track; 0 when no track has times
    std::optional<TrackHeader> longest;
};

void Add(const TrackHeader& track, Totals& totals) {
    ++totals.tracks;
    if (track.shown) ++totals.shown;
    totals.points += track.points;
    totals.length += track.length;
    if (!totals.longest || track.length > totals.longest->length) totals.longest = track;
    if (!track.HasTimes()) return;
    totals.duration += track.end - track.start;
    totals.start = totals.start == 0 ? track.start : std::min(totals.start, track.start);
    totals.end = std::max(totals.end, track.end);
}

void PrintAsJson(const Totals& totals, const Library& library) {
    PrintJson({{"tracks", totals.tracks},
               {"shown", totals.shown},
               {"unreadable", totals.unreadable},
               {"points", totals.points},
               {"length", totals.length},
               {"duration", totals.duration},
               {"start", IsoTime(totals.start)},
               {"end", IsoTime(totals.end)},
               {"longest", totals.longest ? Json(ToUtf8(totals.longest->name)) : Json(nullptr)},
               {"folder", Utf8Of(library.Device().Tracks())},
               {"computed_from", "the headers of the tracks"}});
}

void Print(const Totals& totals, const Library& library) {
    std::cout << Printable(Utf8Of(library.Device().Tracks())) << '\n';
    PrintLabelled("tracks",
                  std::to_string(totals.tracks) + ", " + std::to_string(totals.shown) + " of them shown");
    if (totals.unreadable != 0) PrintLabelled("unreadable", Counted(totals.unreadable, "file", "files"));
    PrintLabelled("points", std::to_string(totals.points));
    PrintLabelled("length", DistanceText(totals.length));
    PrintLabelled("duration", DurationText(totals.duration) + " in all");
    if (totals.longest)
        PrintLabelled("longest", ShownName(totals.longest->name) + ", " + DistanceText(totals.longest->length));
    if (totals.start != 0) {
        PrintLabelled("earliest start", UtcText(totals.start));
        PrintLabelled("latest end", UtcText(totals.end));
    }
    PrintLabelled("computed from", "the headers of the tracks");
}

int LibraryInfo(const Arguments& arguments, const Library& library, const HostSettings& settings) {
    Totals totals;
    for (const TrackHeader& track : HeadersOf(library.Tracks())) Add(track, totals);
    totals.unreadable = UnreadableFiles(library, settings).size();
    if (arguments.json)
        PrintAsJson(totals, library);
    else
        Print(totals, library);
    return kDone;
}

}  // namespace

void AddInfoCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "info", "Tell what there is to know of a track, or of all of them");
    command.add_option("NAME", arguments->name, "The track; without it, the library as a whole")->type_name("");
    command.add_flag("--json", arguments->json, "As JSON");
    command.callback([arguments, &program] {
        const Library library(program.settings);
        program.exitCode = arguments->name.empty() ? LibraryInfo(*arguments, library, program.settings)
                                                   : TrackInfo(*arguments, library);
    });
}

}  // namespace host
