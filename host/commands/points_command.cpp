// `qtrace points`: the points of a track, its key points, or the line made simpler.
#include <charconv>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/iso_time.h"
#include "host/text/json.h"
#include "host/text/table.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/named_tracks.h"

namespace host {
namespace {

constexpr double kFinestLine = 2;  // [m] level 0; each level doubles it
constexpr int kCoarsestLevel = 20;
constexpr double kCoarsestLine = 1e6;  // [m]
const std::string kLevel = "level";

struct Arguments {
    std::string name, simplified;
    bool key = false, simplify = false, csv = false, json = false;
};

std::optional<double> ReadWhole(const std::string& text) {
    double value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (text.empty() || read.ec != std::errc() || *read.ptr != 0) return std::nullopt;
    return value;
}

// "10" is metres, "level3" three doublings of the finest line.
std::optional<double> SimplifyDistance(const std::string& text) {
    if (text.empty()) return kFinestLine;
    const bool isLevel = text.starts_with(kLevel);
    const auto number = ReadWhole(isLevel ? text.substr(kLevel.size()) : text);
    if (!number) return std::nullopt;
    if (!isLevel) return *number > 0 && *number <= kCoarsestLine ? number : std::nullopt;
    const auto level = static_cast<int>(std::clamp(*number, -1.0, kCoarsestLevel + 1.0));
    if (level != *number || level < 0 || level > kCoarsestLevel) return std::nullopt;
    return kFinestLine * static_cast<double>(1 << level);
}

std::string CheckSimplified(const std::string& text) {
    return SimplifyDistance(text) ? "" : text + " is neither a distance in metres nor a level like level3";
}

Points Wanted(CTrackProxy& stored, const Arguments& arguments) {
    Points all, wanted;
    stored.GetPtList(all);
    CTrack track;
    for (const TckPt& point : all) track.AppendPt(point, false);
    if (arguments.simplify) {
        track.SetSimplifyDis(*SimplifyDistance(arguments.simplified));
        track.SimplifyPt();
    }
    if (!arguments.key) return track.GetPtList();
    track.GetKeyPtList(wanted);
    return wanted;
}

std::string AltitudeText(const TckPt& point, int digits) {
    return KnowsAltitude(point) ? Decimals(point.dAltitude, digits) : "";
}

void PrintTable(const Points& points) {
    using Align = Column::Align;
    Table table({{"POINT", Align::Right},
                 {"TIME", Align::Left},
                 {"LATITUDE", Align::Right},
                 {"LONGITUDE", Align::Right},
                 {"ALTITUDE", Align::Right},
                 {"DISTANCE", Align::Right}});
    const std::vector<double> distances = DistancesAlong(points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TckPt& point = points[i];
        table.AddRow({std::to_string(i + 1), point.lTime == 0 ? "-" : UtcText(point.lTime),
                      Decimals(point.dLatitude, 6), Decimals(point.dLongitude, 6),
                      KnowsAltitude(point) ? AltitudeText(point, 1) + " m" : "-", DistanceText(distances[i])});
    }
    table.Print(std::cout, 0);
}

void PrintCsv(const Points& points) {
    std::cout << "time,latitude,longitude,altitude\n";
    for (const TckPt& point : points)
        std::cout << (point.lTime == 0 ? "" : IsoText(point.lTime)) << ',' << Decimals(point.dLatitude, 6)
                  << ',' << Decimals(point.dLongitude, 6) << ',' << AltitudeText(point, 2) << '\n';
}

void PrintAsJson(const Points& points) {
    Json json = Json::array();
    for (const TckPt& point : points) json.push_back(PointJson(point, false));
    PrintJson(json);
}

int PrintPoints(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    CTrackProxy* track = TrackNamed(library, arguments.name);
    if (track == nullptr) return FailForName("points", arguments.name);
    const Points points = Wanted(*track, arguments);
    if (points.empty()) return Fail("points", Utf8Of(library.FileOf(*track)) + " cannot be read any more");
    if (arguments.json)
        PrintAsJson(points);
    else if (arguments.csv)
        PrintCsv(points);
    else
        PrintTable(points);
    return kDone;
}

}  // namespace

void AddPointsCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "points", "Print the points of a track");
    command.add_option("NAME", arguments->name, "The track")->type_name("")->required();
    command.add_flag("--key", arguments->key,
                     "Only where the way starts, stops and turns, and some in between");
    auto* simplified =
        command.add_option("--simplified", arguments->simplified,
                           "The line simpler, off by so much at most; level0 is 2 m, level1 4 m ...");
    simplified->type_name("[METRES|levelN]")->expected(0, 1)->check(CLI::Validator(CheckSimplified, ""));
    auto* csv = command.add_flag("--csv", arguments->csv, "As comma-separated values");
    command.add_flag("--json", arguments->json, "As JSON")->excludes(csv);
    command.callback([arguments, simplified, &program] {
        arguments->simplify = simplified->count() != 0;
        program.exitCode = PrintPoints(*arguments, program.settings);
    });
}

}  // namespace host
