// Tracks as GeoJSON (RFC 7946).
#include <cmath>

#include "host/settings/host_settings.h"
#include "host/text/iso_time.h"
#include "host/text/json.h"
#include "host/text/number_text.h"
#include "host/tracks/storable_altitude.h"
#include "host/tracks/track_document.h"

namespace host {
namespace {

// Two neighbours on different sides of the 180th meridian: the way over it is the shorter one.
bool IsCrossing(const TckPt& a, const TckPt& b) { return std::fabs(a.dLongitude - b.dLongitude) > 180; }

// Where the line from a to b meets the meridian, on the side of a.
TckPt AtMeridian(const TckPt& a, const TckPt& b) {
    const double side = std::copysign(180.0, a.dLongitude);
    const double way = b.dLongitude + 2 * side - a.dLongitude;
    const double part = way == 0 ? 0 : (side - a.dLongitude) / way;
    TckPt point = a;
    point.dLongitude = side;
    point.dLatitude += part * (b.dLatitude - a.dLatitude);
    point.dAltitude = KnowsAltitude(a) && KnowsAltitude(b)
                          ? MeasuredAltitude(a.dAltitude + part * (b.dAltitude - a.dAltitude))
                          : 0.0;
    if (a.lTime != 0 && b.lTime != 0)
        point.lTime += static_cast<std::int32_t>(
            std::lround(part * (static_cast<double>(b.lTime) - static_cast<double>(a.lTime))));
    return point;
}

// The lines of a track, none of which crosses the 180th meridian. A line has two points at least.
std::vector<Segment> LinesOf(const DocumentTrack& track) {
    std::vector<Segment> lines;
    for (const Segment& segment : track.segments) {
        lines.emplace_back();
        for (const TckPt& point : segment) {
            if (!lines.back().empty() && IsCrossing(lines.back().back(), point)) {
                const TckPt before = lines.back().back();
                lines.back().push_back(AtMeridian(before, point));
                lines.push_back({AtMeridian(point, before)});
            }
            lines.back().push_back(point);
        }
    }
    std::erase_if(lines, [](const Segment& line) { return line.size() < 2; });
    return lines;
}

std::string Position(const TckPt& point) {
    std::string text = '[' + ExactText(point.dLongitude) + ',' + ExactText(point.dLatitude);
    if (KnowsAltitude(point)) text += ',' + SingleText(point.dAltitude);
    return text + ']';
}

std::string Time(const TckPt& point) { return point.lTime == 0 ? "null" : '"' + IsoText(point.lTime) + '"'; }

template <typename Text>
bool WriteLine(const Segment& line, const TextSink& sink, Text text) {
    bool goesOn = sink("[");
    for (std::size_t i = 0; goesOn && i < line.size(); ++i)
        goesOn = sink((i == 0 ? "" : ",\n") + text(line[i]));
    return goesOn && sink("]");
}

// One line as a list, several as a list of lists.
template <typename Text>
bool WriteLines(const std::vector<Segment>& lines, const TextSink& sink, Text text) {
    if (lines.size() == 1) return WriteLine(lines.front(), sink, text);
    bool goesOn = sink("[");
    for (std::size_t i = 0; goesOn && i < lines.size(); ++i)
        goesOn = sink(i == 0 ? "" : ",\n") && WriteLine(lines[i], sink, text);
    return goesOn && sink("]");
}

std::string Properties(const DocumentTrack& track) {
    return "\"properties\":{\"name\":" + JsonText(track.name) +
           ",\"stroke\":" + JsonText(ColorText(track.color)) + ",\"points\":" + std::to_string(track.Points());
}

// A track of a single point is a point; one of none has no place.
bool WriteWithoutLine(const DocumentTrack& track, const TextSink& sink) {
    for (const Segment& segment : track.segments)
        if (!segment.empty())
            return sink("{\"type\":\"Point\",\"coordinates\":" + Position(segment.front()) + "}," +
                        Properties(track) + ",\"coordTimes\":" + Time(segment.front()) + "}}");
    return sink("null," + Properties(track) + "}}");
}

bool WriteFeature(const DocumentTrack& track, const TextSink& sink) {
    const std::vector<Segment> lines = LinesOf(track);
    if (!sink("{\"type\":\"Feature\",\"geometry\":")) return false;
    if (lines.empty()) return WriteWithoutLine(track, sink);
    const std::string type = lines.size() == 1 ? "LineString" : "MultiLineString";
    return sink("{\"type\":\"" + type + "\",\"coordinates\":") && WriteLines(lines, sink, Position) &&
           sink("},\n" + Properties(track) + ",\"coordTimes\":") && WriteLines(lines, sink, Time) && sink("}}");
}

}  // namespace

void WriteGeoJson(const std::vector<DocumentTrack>& tracks, const TextSink& sink) {
    bool goesOn = sink("{\"type\":\"FeatureCollection\",\"features\":[\n");
    for (std::size_t i = 0; goesOn && i < tracks.size(); ++i)
        goesOn = sink(i == 0 ? "" : ",\n") && WriteFeature(tracks[i], sink);
    if (goesOn) sink("\n]}\n");
}

}  // namespace host
