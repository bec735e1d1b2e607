#include "host/page/map_svg.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "host/page/map_projection.h"
#include "host/page/profile_svg.h"
#include "host/page/round_step.h"
#include "host/page/svg.h"
#include "host/text/markup.h"
#include "host/text/text.h"
#include "host/tracks/bounds.h"

namespace host {
namespace {

constexpr double kWidth = 960, kMargin = 24, kMapTop = 84, kMapHeight = 430, kProfileHeight = 150;
constexpr PictureFrame kMap = {kMargin, kMapTop, kWidth - 2 * kMargin, kMapHeight};
constexpr double kRoomAroundTracks = 46;
constexpr double kBetweenLines = 120;  // [px] of the graticule, about
constexpr std::size_t kLongestLegend = 10;

constexpr std::string_view kStyle = R"(
text{font-family:system-ui,-apple-system,"Segoe UI",Roboto,"Noto Sans",sans-serif;fill:#626a60;font-size:12px}
.title{font-size:24px;font-weight:680;fill:#1b1f1a}.what{font-size:14px}.strong{fill:#1b1f1a;font-weight:600}
.grid{stroke:#d3d7cc;stroke-width:1;fill:none}.halo{stroke:#fff;stroke-width:8;opacity:.9}
.track{stroke-width:4}.track,.halo{fill:none;stroke-linejoin:round;stroke-linecap:round}
.end{stroke:#fff;stroke-width:2.5}.letter{fill:#fff;font-size:11px;font-weight:700;text-anchor:middle}
.ruler{stroke:#1b1f1a;stroke-width:1.5;fill:none}.elevation{stroke:#4f7f63;stroke-width:1.8;fill:none}
.hills{fill:#4f7f63;opacity:.16}.speed{stroke:#b4572e;stroke-width:1.4;fill:none}
)";

std::string DurationText(long seconds) {
    const long minutes = seconds / 60;
    const std::string rest = std::to_string(minutes % 60) + " min";
    return minutes < 60 ? rest : std::to_string(minutes / 60) + " h " + rest;
}

std::string Subtitle(const std::vector<DrawnTrack>& tracks) {
    double length = 0;
    for (const DrawnTrack& track : tracks) length += track.statistics.length;
    if (tracks.size() > 1) return std::to_string(tracks.size()) + " tracks, " + DistanceText(length);
    const Statistics& statistics = tracks[0].statistics;
    std::string text = DistanceText(length);
    if (statistics.movingTime && *statistics.movingTime > 0)
        text += ", " + DurationText(*statistics.movingTime) + " moving";
    if (statistics.elevation)
        text += ", " + Decimals(statistics.elevation->ascent, 0) + " m up, " +
                Decimals(statistics.elevation->descent, 0) + " m down";
    if (statistics.start) text += ", " + UtcText(*statistics.start).substr(0, 10);
    return text;
}

// "47.25°N": as many digits as the step between two lines needs.
std::string DegreesText(double degrees, double step, char positive, char negative) {
    const int digits = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    const std::string text = Decimals(std::fabs(degrees), digits) + "\u00b0";
    return std::fabs(degrees) < step / 2 ? text : text + (degrees < 0 ? negative : positive);
}

std::string Graticule(const MapProjection& projection) {
    const double right = kMap.left + kMap.width, bottom = kMap.top + kMap.height;
    const double step = RoundStep(projection.DegreesPerPixel() * kBetweenLines);
    std::string lines, labels;
    for (const double at : Multiples(step, projection.LongitudeAt(kMap.left), projection.LongitudeAt(right))) {
        const double x = projection.At(0, at).x;
        lines += SvgPath("grid", {{{x, kMap.top}, {x, bottom}}});
        if (x > kMap.left + 60 && x < right - 60)
            labels +=
                SvgText({x, kMap.top + 16}, DegreesText(NormalLongitude(at), step, 'E', 'W'), "", "middle");
    }
    for (const double at : Multiples(step, projection.LatitudeAt(bottom), projection.LatitudeAt(kMap.top))) {
        const double y = projection.At(at, 0).y;
        lines += SvgPath("grid", {{{kMap.left, y}, {right, y}}});
        if (y > kMap.top + 30 && y < bottom - 50)
            labels += SvgText({kMap.left + 8, y + 4}, DegreesText(at, step, 'N', 'S'));
    }
    return lines + labels;
}

// Spots that lie within a third of a pixel of the last one cannot be told apart.
std::vector<std::vector<Spot>> SpotsOf(const DrawnTrack& track, const GroundLine& line,
                                       const MapProjection& projection) {
    std::vector<std::vector<Spot>> pieces(1);
    std::size_t next = 0;
    const std::vector<std::size_t>& breaks = track.drawn.breaks;
    for (std::size_t i = 0; i < line.latitudes.size(); ++i) {
        if (next < breaks.size() && breaks[next] == i) {
            pieces.emplace_back();
            ++next;
        }
        const Spot spot = projection.At(line.latitudes[i], line.longitudes[i]);
        std::vector<Spot>& piece = pieces.back();
        const bool isLast = i + 1 == line.latitudes.size();
        if (piece.empty() || isLast || std::hypot(spot.x - piece.back().x, spot.y - piece.back().y) > 0.33)
            piece.push_back(spot);
    }
    return pieces;
}

std::string End(const Spot& spot, bool isStart) {
    const std::string at = "\" fill=\"" + std::string(isStart ? "#1a7f37" : "#b42318") + "\"/>";
    const std::string shape = isStart
                                  ? "<circle class=\"end\" cx=\"" + Decimals(spot.x, 1) + "\" cy=\"" +
                                        Decimals(spot.y, 1) + "\" r=\"10" + at
                                  : "<rect class=\"end\" x=\"" + Decimals(spot.x - 9, 1) + "\" y=\"" +
                                        Decimals(spot.y - 9, 1) + "\" width=\"18\" height=\"18\" rx=\"4" + at;
    return shape + '\n' + SvgText({spot.x, spot.y + 4}, isStart ? "A" : "B", "letter");
}

std::string Tracks(const std::vector<DrawnTrack>& tracks, const std::vector<GroundLine>& lines,
                   const MapProjection& projection) {
    std::string drawn, ends;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const auto pieces = SpotsOf(tracks[i], lines[i], projection);
        drawn += SvgPath("halo", pieces) + SvgPath("track", pieces, tracks[i].color);
        const Spot first = pieces.front().front(), last = pieces.back().back();
        const bool isRound = std::hypot(first.x - last.x, first.y - last.y) < 16;
        ends += End({last.x + (isRound ? 22 : 0), last.y}, false) + End(first, true);
    }
    return drawn + ends;
}

std::string ScaleBar(const MapProjection& projection) {
    const double metres = RoundStep(projection.MetresPerPixel() * 80),
                 width = metres / projection.MetresPerPixel();
    const double left = kMap.left + 16, bottom = kMap.top + kMap.height - 16;
    const std::string text =
        metres < 1000 ? Decimals(metres, metres < 1 ? 1 : 0) + " m" : Decimals(metres / 1000, 0) + " km";
    return SvgPath("ruler",
                   {{{left, bottom - 7}, {left, bottom}, {left + width, bottom}, {left + width, bottom - 7}}}) +
           SvgText({left + width / 2, bottom - 6}, text, "strong", "middle");
}

std::string North() {
    const double x = kMap.left + kMap.width - 26, y = kMap.top + kMap.height - 22;
    const auto at = [&](double dx, double dy) { return Decimals(x + dx, 1) + ' ' + Decimals(y + dy, 1); };
    return "<path fill=\"#1b1f1a\" d=\"M" + at(0, -32) + 'L' + at(8, -11) + 'L' + at(0, -16) + 'L' +
           at(-8, -11) + "Z\"/>\n" + SvgText({x, y + 4}, "N", "strong", "middle");
}

std::string Legend(const std::vector<DrawnTrack>& tracks) {
    std::string legend;
    double y = kMap.top + 44;
    for (std::size_t i = 0; i < tracks.size() && i < kLongestLegend; ++i, y += 22) {
        const double x = kMap.left + kMap.width - 20;
        legend += SvgPath("track", {{{x - 22, y - 4}, {x, y - 4}}}, tracks[i].color) +
                  SvgText({x - 30, y}, tracks[i].name, "strong", "end");
    }
    if (tracks.size() > kLongestLegend)
        legend += SvgText({kMap.left + kMap.width - 20, y},
                          "and " + std::to_string(tracks.size() - kLongestLegend) + " more", "", "end");
    return legend;
}

std::string Map(const std::vector<DrawnTrack>& tracks) {
    std::vector<GroundLine> lines;
    const double nearTo = tracks[0].drawn.points.front().dLongitude;
    for (const DrawnTrack& track : tracks) lines.push_back(LineOf(track.drawn.points, nearTo));
    const MapProjection projection(
        lines, {kMap.left + kRoomAroundTracks, kMap.top + kRoomAroundTracks, kMap.width - 2 * kRoomAroundTracks,
                kMap.height - 2 * kRoomAroundTracks});
    return Graticule(projection) + Tracks(tracks, lines, projection) + ScaleBar(projection) + North();
}

}  // namespace

std::string MapSvg(const std::string& title, const std::vector<DrawnTrack>& tracks) {
    const bool hasProfile = tracks.size() == 1 && HasProfile(tracks[0].drawn);
    const double height = kMapTop + kMapHeight + kMargin + (hasProfile ? kProfileHeight + kMargin : 0);
    const std::string size = Decimals(kWidth, 0), tall = Decimals(height, 0);
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size + ' ' + tall +
                      "\" width=\"" + size + "\" height=\"" + tall + "\" role=\"img\">\n<title>" +
                      MarkupText(title) + "</title>\n<style>" + std::string(kStyle) + "</style>\n";
    svg += SvgBox({0, 0, kWidth, height}, "#ffffff", 14) + SvgBox(kMap, "#eceee8", 10);
    svg += SvgText({kMargin, 42}, title, "title") + SvgText({kMargin, 66}, Subtitle(tracks), "what");
    svg += Map(tracks);
    if (tracks.size() > 1) svg += Legend(tracks);
    const double top = kMapTop + kMapHeight + kMargin;
    if (hasProfile) svg += ProfileSvg(tracks[0].drawn, {kMargin, top, kWidth - 2 * kMargin, kProfileHeight});
    return svg + "</svg>\n";
}

}  // namespace host
