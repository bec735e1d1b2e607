#include "host/tracks/statistics_text.h"

#include <cmath>
#include <iomanip>
#include <iostream>

#include "host/text/display_width.h"
#include "host/text/text.h"

namespace host {
namespace {

constexpr double kSquareKilometre = 1e6;
constexpr int kLabelWidth = 18;

std::string TwoDigits(long value) { return (value < 10 ? "0" : "") + std::to_string(value); }

std::string Degrees(double value, char positive, char negative) {
    return Decimals(std::fabs(value), 6) + ' ' + (value < 0 ? negative : positive);
}

std::string BoundsText(const Bounds& b) {
    return Degrees(b.south, 'N', 'S') + " to " + Degrees(b.north, 'N', 'S') + ", " + Degrees(b.west, 'E', 'W') +
           " to " + Degrees(b.east, 'E', 'W') + (b.west > b.east ? " (across the 180th meridian)" : "");
}

void PrintTimes(const Statistics& s) {
    if (!s.start || !s.end) return;
    PrintLabelled("start", UtcText(*s.start));
    PrintLabelled("end", UtcText(*s.end));
    PrintLabelled("duration", DurationText(*s.duration));
    PrintLabelled("moving", DurationText(*s.movingTime));
    PrintLabelled("stopped",
                  DurationText(*s.stoppedTime) + " (slower than " + Decimals(kMovingSpeed, 1) + " m/s)");
    if (*s.unrecordedTime != 0)
        PrintLabelled("not recorded", DurationText(*s.unrecordedTime) + " (gaps of half an hour and more)");
}

void PrintSpeeds(const Statistics& s) {
    if (s.averageSpeed) PrintLabelled("average speed", SpeedText(*s.averageSpeed));
    if (s.movingSpeed) PrintLabelled("while moving", SpeedText(*s.movingSpeed));
    if (s.greatestSpeed) PrintLabelled("greatest speed", SpeedText(*s.greatestSpeed));
}

void PrintElevation(const Elevation& e) {
    PrintLabelled("ascent", Decimals(e.ascent, 0) + " m (less than " + Decimals(kLeastClimb, 0) +
                                " m up or down counts as noise)");
    PrintLabelled("descent", Decimals(e.descent, 0) + " m");
    PrintLabelled("altitude", Decimals(e.lowest, 0) + " m to " + Decimals(e.highest, 0) + " m");
}

}  // namespace

std::string DurationText(long seconds) {
    return std::to_string(seconds / 3600) + ':' + TwoDigits(seconds / 60 % 60) + ':' + TwoDigits(seconds % 60);
}

std::string SpeedText(double metresASecond) { return Decimals(metresASecond * 3.6, 1) + " km/h"; }

std::string AreaText(double squareMetres) {
    return squareMetres < kSquareKilometre / 10 ? Decimals(squareMetres, 0) + " m²"
                                                : Decimals(squareMetres / kSquareKilometre, 2) + " km²";
}

void PrintLabelled(const std::string& label, const std::string& text) {
    std::cout << "  " << std::left << std::setw(kLabelWidth) << label << Printable(text) << '\n';
}

void PrintStatistics(const Statistics& s) {
    PrintLabelled("points", std::to_string(s.points));
    PrintLabelled("length", DistanceText(s.length));
    PrintTimes(s);
    PrintSpeeds(s);
    if (s.elevation) PrintElevation(*s.elevation);
    PrintLabelled("area", AreaText(s.area) + " within the closed line");
    if (s.bounds) PrintLabelled("bounds", BoundsText(*s.bounds));
    PrintLabelled("computed from", s.basis);
}

}  // namespace host
