#include "host/tracks/import_report.h"

#include <algorithm>
#include <iostream>

#include "host/text/display_width.h"
#include "host/text/json.h"
#include "host/text/text.h"

namespace host {
namespace {

void AddPart(std::string& text, std::uint64_t count, const char* one, const char* several) {
    if (count != 0) text += (text.empty() ? "" : ", ") + Counted(count, one, several);
}

std::string DefectsOf(const ImportedTrack& track) {
    std::string text;
    AddPart(text, track.badPositions, "point without a valid position skipped",
            "points without a valid position skipped");
    AddPart(text, track.badTimes, "time unreadable or out of range", "times unreadable or out of range");
    AddPart(text, track.badNumbers, "other number unreadable", "other numbers unreadable");
    AddPart(text, track.timesBack, "time goes back", "times go back");
    return text;
}

void PrintTrack(const ImportedTrack& track) {
    if (track.name.empty() && track.skipped.empty()) return;
    if (!track.skipped.empty()) {
        std::cout << "  skipped   " << Printable(track.wanted + ": " + track.skipped) << '\n';
        return;
    }
    std::cout << "  imported  " << Printable(track.name) << ", " << Counted(track.points, "point", "points");
    if (track.segments > 1) std::cout << ", " << track.segments << " segments joined";
    std::cout << '\n';
    if (track.name != track.wanted)
        std::cout << "            instead of the name " << Printable(track.wanted) << '\n';
    if (const std::string defects = DefectsOf(track); !defects.empty())
        std::cout << "            " << defects << '\n';
}

std::string OthersIn(const GpxOutcome& outcome) {
    std::string text;
    AddPart(text, outcome.routes, "route", "routes");
    if (outcome.routes != 0) text += " of " + Counted(outcome.routePoints, "point", "points");
    AddPart(text, outcome.waypoints, "waypoint", "waypoints");
    return text;
}

Json JsonOf(const ImportedTrack& track) {
    return {{"name", TextOrNull(track.name)},
            {"wanted_name", track.wanted},
            {"points", track.points},
            {"segments", track.segments},
            {"bad_positions", track.badPositions},
            {"bad_times", track.badTimes},
            {"bad_numbers", track.badNumbers},
            {"times_back", track.timesBack},
            {"skipped", TextOrNull(track.skipped)},
            {"problem", TextOrNull(track.problem)}};
}

Json JsonOf(const ImportedFile& file) {
    Json tracks = Json::array();
    for (const ImportedTrack& track : file.tracks) tracks.push_back(JsonOf(track));
    return {{"file", file.name},
            {"tracks", tracks},
            {"skipped_routes", file.outcome.routes},
            {"skipped_route_points", file.outcome.routePoints},
            {"skipped_waypoints", file.outcome.waypoints},
            {"replaced_bytes", file.outcome.xml.replacedBytes},
            {"problem", TextOrNull(file.problem)}};
}

}  // namespace

std::size_t ImportedFile::Imported() const {
    return static_cast<std::size_t>(std::count_if(
        tracks.begin(), tracks.end(), [](const ImportedTrack& track) { return !track.name.empty(); }));
}

bool ImportedFile::IsGood() const {
    return problem.empty() && std::all_of(tracks.begin(), tracks.end(),
                                          [](const ImportedTrack& track) { return track.problem.empty(); });
}

std::string ProblemOf(const ImportedFile& file) {
    const XmlOutcome& xml = file.outcome.xml;
    std::size_t points = 0;
    for (const ImportedTrack& track : file.tracks) points += track.points;
    if (!xml.problem.empty()) {
        const std::string where = xml.line == 0 ? "" : "line " + std::to_string(xml.line) + ": ";
        return where + xml.problem +
               (points == 0 ? "" : "; " + Counted(points, "whole point", "whole points") + " before it");
    }
    if (points != 0) return "";
    const std::string others = OthersIn(file.outcome);
    return "it has no track with points" + (others.empty() ? "" : ", only " + others);
}

void PrintImport(const ImportedFile& file) {
    std::cout << Printable(file.name) << '\n';
    for (const ImportedTrack& track : file.tracks) PrintTrack(track);
    if (const std::string others = OthersIn(file.outcome); !others.empty())
        std::cout << "  skipped   " << others << '\n';
    if (const std::uint64_t bytes = file.outcome.xml.replacedBytes; bytes != 0)
        std::cout << "  replaced  " << Counted(bytes, "byte that is", "bytes that are") << " no UTF-8\n";
}

void PrintImportAsJson(const std::vector<ImportedFile>& files) {
    Json list = Json::array();
    for (const ImportedFile& file : files) list.push_back(JsonOf(file));
    PrintJson({{"files", list}});
}

}  // namespace host
