#include "host/page/profile_svg.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "host/page/round_step.h"
#include "host/page/svg.h"
#include "host/text/text.h"

namespace host {
namespace {

constexpr double kAxis = 46, kFoot = 24, kHead = 20;  // [px] room for the figures

using Values = std::vector<std::optional<double>>;

Values Elevations(const DrawnPoints& drawn) {
    Values values;
    for (const TckPt& point : drawn.points)
        values.push_back(KnowsAltitude(point) ? std::optional(point.dAltitude) : std::nullopt);
    return values;
}

Values SpeedsInKmh(const DrawnPoints& drawn) {
    Values values = drawn.speeds;
    for (auto& speed : values)
        if (speed) *speed *= 3.6;
    return values;
}

bool HasAny(const Values& values) {
    return std::any_of(values.begin(), values.end(), [](const auto& value) { return value.has_value(); });
}

struct Range {
    double low, high;
};

Range RangeOf(const Values& values, double least) {
    Range range{1e300, -1e300};
    for (const auto& value : values) {
        if (!value) continue;
        range.low = std::min(range.low, *value);
        range.high = std::max(range.high, *value);
    }
    const double missing = std::max(0.0, least - (range.high - range.low)) / 2;
    return {range.low - missing, range.high + missing};
}

// Where values and distances lie in the frame.
struct Plot {
    PictureFrame frame;
    double length;
    Range range;

    double X(double distance) const { return frame.left + distance / length * frame.width; }
    double Y(double value) const {
        return frame.top + frame.height * (range.high - value) / (range.high - range.low);
    }
    double Bottom() const { return frame.top + frame.height; }
};

// A line for each run of points with values, no two spots nearer than half a pixel to the side.
std::vector<std::vector<Spot>> Curve(const Plot& plot, const DrawnPoints& drawn, const Values& values) {
    std::vector<std::vector<Spot>> lines(1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!values[i]) {
            if (!lines.back().empty()) lines.emplace_back();
            continue;
        }
        const Spot spot{plot.X(drawn.distances[i]), plot.Y(*values[i])};
        if (lines.back().empty() || spot.x - lines.back().back().x >= 0.5) lines.back().push_back(spot);
    }
    std::erase_if(lines, [](const auto& line) { return line.size() < 2; });
    return lines;
}

std::vector<std::vector<Spot>> Hills(const Plot& plot, std::vector<std::vector<Spot>> lines) {
    for (std::vector<Spot>& line : lines) {
        line.push_back({line.back().x, plot.Bottom()});
        line.push_back({line.front().x, plot.Bottom()});
    }
    return lines;
}

std::string LeftAxis(const Plot& plot) {
    std::string axis;
    for (const double value :
         Multiples(RoundStep((plot.range.high - plot.range.low) / 4), plot.range.low, plot.range.high))
        axis +=
            SvgPath("grid",
                    {{{plot.frame.left, plot.Y(value)}, {plot.frame.left + plot.frame.width, plot.Y(value)}}}) +
            SvgText({plot.frame.left - 8, plot.Y(value) + 4}, Decimals(value, 0), "", "end");
    return axis + SvgText({plot.frame.left - kAxis + 2, plot.frame.top - 10}, "Elevation m", "strong");
}

std::string RightAxis(const Plot& plot) {
    std::string axis;
    const double right = plot.frame.left + plot.frame.width;
    for (const double value :
         Multiples(RoundStep((plot.range.high - plot.range.low) / 4), plot.range.low, plot.range.high))
        axis += SvgText({right + 8, plot.Y(value) + 4}, Decimals(value, 0));
    return axis + SvgText({right + kAxis - 2, plot.frame.top - 10}, "Speed km/h", "strong", "end");
}

std::string DistanceAxis(const Plot& plot) {
    const bool inKm = plot.length >= 2000;
    const double unit = inKm ? 1000 : 1, step = RoundStep(plot.length / unit / 10);
    const int digits = step < 1 ? static_cast<int>(std::ceil(-std::log10(step))) : 0;
    std::string axis;
    for (const double value : Multiples(step, 0, plot.length / unit))
        if (plot.X(value * unit) < plot.frame.left + plot.frame.width - 34)
            axis += SvgText({plot.X(value * unit), plot.Bottom() + 18}, Decimals(value, digits), "", "middle");
    return axis + SvgText({plot.frame.left + plot.frame.width, plot.Bottom() + 18}, inKm ? "km" : "m", "strong",
                          "end");
}

}  // namespace

bool HasProfile(const DrawnPoints& drawn) {
    return drawn.points.size() > 1 && drawn.distances.back() > 0 &&
           (HasAny(Elevations(drawn)) || HasAny(drawn.speeds));
}

std::string ProfileSvg(const DrawnPoints& drawn, const PictureFrame& frame) {
    const PictureFrame inner{frame.left + kAxis, frame.top + kHead, frame.width - 2 * kAxis,
                             frame.height - kHead - kFoot};
    const Values elevations = Elevations(drawn), speeds = SpeedsInKmh(drawn);
    const double length = drawn.distances.back();
    std::string svg;
    if (HasAny(elevations)) {
        const Plot plot{inner, length, RangeOf(elevations, 20)};
        const auto lines = Curve(plot, drawn, elevations);
        svg += LeftAxis(plot) + SvgPath("hills", Hills(plot, lines)) + SvgPath("elevation", lines);
    }
    if (HasAny(speeds)) {
        const Plot plot{inner, length, {0, std::max(RangeOf(speeds, 1).high, 1.0)}};
        svg += RightAxis(plot) + SvgPath("speed", Curve(plot, drawn, speeds));
    }
    return svg + DistanceAxis({inner, length, {0, 1}});
}

}  // namespace host
