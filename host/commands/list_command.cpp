// `qtrace list`: the saved tracks. One of them in full: host/commands/info_command.cpp.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/text/choice.h"
#include "host/text/display_width.h"
#include "host/text/json.h"
#include "host/text/table.h"
#include "host/text/terminal.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/statistics_text.h"
#include "host/tracks/track_header.h"

namespace host {
namespace {

enum class Order { Saved, Name, Date, Length };

const std::map<std::string, Order> kOrders = {
    {"saved", Order::Saved}, {"name", Order::Name}, {"date", Order::Date}, {"length", Order::Length}};

struct Arguments {
    bool json = false;
    Order order = Order::Saved;
};

bool ComesBefore(const TrackHeader& a, const TrackHeader& b, Order order) {
    const auto inCapitals = [](std::string name) {
        UpString(name);
        return name;
    };
    switch (order) {
        case Order::Name:
            return inCapitals(a.name) < inCapitals(b.name);
        case Order::Date:
            return a.start > b.start;
        case Order::Length:
            return a.length > b.length;
        default:
            return false;  // the library's own order: newest saved first
    }
}

std::vector<TrackHeader> Sorted(const Library& library, Order order) {
    std::vector<TrackHeader> tracks = HeadersOf(library.Tracks());
    std::stable_sort(tracks.begin(), tracks.end(),
                     [order](const auto& a, const auto& b) { return ComesBefore(a, b, order); });
    return tracks;
}

// Two blocks in the track's color, for terminals that have it.
std::string Swatch(unsigned long color) {
    return "\033[38;2;" + std::to_string(color & 0xff) + ';' + std::to_string(color >> 8 & 0xff) + ';' +
           std::to_string(color >> 16 & 0xff) + "m██\033[0m ";
}

std::vector<std::string> Cells(const TrackHeader& track) {
    return {ShownName(track.name),
            std::to_string(track.points),
            DistanceText(track.length),
            track.start == 0 ? "-" : UtcText(track.start),
            track.HasTimes() ? DurationText(track.end - track.start) : "-",
            ColorText(track.color),
            track.shown ? "yes" : "no"};
}

void PrintTable(const std::vector<TrackHeader>& tracks) {
    constexpr std::size_t kColorColumn = 5, kSwatchWidth = 3;
    using Align = Column::Align;
    Table table({{"NAME", Align::Left},
                 {"POINTS", Align::Right},
                 {"LENGTH", Align::Right},
                 {"START", Align::Left},
                 {"DURATION", Align::Right},
                 {"COLOR", Align::Left},
                 {"SHOWN", Align::Left}});
    const std::size_t width = WidthOfResults();
    const bool inColor = width != 0 && std::getenv("NO_COLOR") == nullptr;
    for (const TrackHeader& track : tracks) {
        table.AddRow(Cells(track));
        if (inColor) table.Decorate(kColorColumn, Swatch(track.color), kSwatchWidth);
    }
    table.Print(std::cout, width);
}

int List(const Arguments& arguments, const HostSettings& settings) {
    const Library library(settings);
    const std::vector<TrackHeader> tracks = Sorted(library, arguments.order);
    if (arguments.json) {
        Json json = Json::array();
        for (const TrackHeader& track : tracks) json.push_back(TrackJson(track));
        PrintJson(json);
    } else if (!tracks.empty()) {
        PrintTable(tracks);
    }
    std::cout.flush();
    if (tracks.empty()) std::cerr << "no tracks in " << Printable(Utf8Of(library.Device().Tracks())) << '\n';
    for (const UnreadableFile& file : UnreadableFiles(library, settings))
        std::cerr << Printable(Utf8Of(file.file)) << " is not listed: " << file.reason << '\n';
    return kDone;
}

}  // namespace

void AddListCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "list", "List the saved tracks");
    command.add_flag("--json", arguments->json, "As JSON");
    AddChoice(command, "--sort", arguments->order, kOrders, "saved|name|date|length",
              "Newest saved first, by name, newest start first, or longest first");
    command.callback([arguments, &program] { program.exitCode = List(*arguments, program.settings); });
}

}  // namespace host
