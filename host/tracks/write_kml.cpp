// Tracks as KML 2.2 with the extension for tracks in time.
#include <algorithm>

#include "host/settings/host_settings.h"
#include "host/text/iso_time.h"
#include "host/text/markup.h"
#include "host/text/number_text.h"
#include "host/tracks/storable_altitude.h"
#include "host/tracks/track_document.h"

namespace host {
namespace {

constexpr const char* kHead =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<kml xmlns="http://www.opengis.net/kml/2.2" xmlns:gx="http://www.google.com/kml/ext/2.2">
<Document>
)";

std::string Coordinates(const TckPt& point, char separator) {
    std::string text = ExactText(point.dLongitude) + separator + ExactText(point.dLatitude);
    if (KnowsAltitude(point)) text += separator + SingleText(point.dAltitude);
    return text;
}

// Opaque; the order of the format is alpha, blue, green, red.
std::string ColorOf(const DocumentTrack& track) {
    const std::string rgb = ColorText(track.color);
    return "ff" + rgb.substr(5, 2) + rgb.substr(3, 2) + rgb.substr(1, 2);
}

std::string AltitudeMode(bool withAltitude) {
    return withAltitude ? "<altitudeMode>absolute</altitudeMode>" : "";
}

bool WriteInTime(const Segment& segment, bool withAltitude, const TextSink& sink) {
    bool goesOn = sink("<gx:Track>" + AltitudeMode(withAltitude) + "\n");
    for (std::size_t i = 0; goesOn && i < segment.size(); ++i)
        goesOn = sink("<when>" + IsoText(segment[i].lTime) + "</when>\n");
    for (std::size_t i = 0; goesOn && i < segment.size(); ++i)
        goesOn = sink("<gx:coord>" + Coordinates(segment[i], ' ') + "</gx:coord>\n");
    return goesOn && sink("</gx:Track>\n");
}

// A line has two points at least.
bool WriteLine(const Segment& segment, bool withAltitude, const TextSink& sink) {
    const bool isPoint = segment.size() == 1;
    bool goesOn = sink((isPoint ? "<Point>" : "<LineString><tessellate>1</tessellate>") +
                       AltitudeMode(withAltitude) + "<coordinates>\n");
    for (std::size_t i = 0; goesOn && i < segment.size(); ++i)
        goesOn = sink(Coordinates(segment[i], ',') + "\n");
    return goesOn && sink(isPoint ? "</coordinates></Point>\n" : "</coordinates></LineString>\n");
}

// The time of a track that is a single point stands beside the point.
std::string TimeOf(const DocumentTrack& track) {
    if (track.Points() != 1 || !track.HasTimes()) return "";
    const auto used = std::find_if(track.segments.begin(), track.segments.end(),
                                   [](const Segment& segment) { return !segment.empty(); });
    return "<TimeStamp><when>" + IsoText(used->front().lTime) + "</when></TimeStamp>\n";
}

std::string Head(const DocumentTrack& track) {
    return "<Placemark>\n<name>" + MarkupText(track.name) + "</name>\n" + TimeOf(track) +
           "<Style><LineStyle><color>" + ColorOf(track) + "</color><width>3</width></LineStyle></Style>\n";
}

bool WriteTrack(const DocumentTrack& track, const TextSink& sink) {
    const bool inTime = track.HasTimes() && track.Points() > 1, withAltitude = track.HasAltitudes();
    const std::string shape = inTime ? "gx:MultiTrack" : "MultiGeometry";
    const bool several = track.segments.size() != 1;
    bool goesOn = sink(Head(track) + (several ? "<" + shape + ">\n" : ""));
    for (const Segment& segment : track.segments)
        goesOn = goesOn &&
                 (inTime ? WriteInTime(segment, withAltitude, sink) : WriteLine(segment, withAltitude, sink));
    return goesOn && sink((several ? "</" + shape + ">\n" : "") + "</Placemark>\n");
}

}  // namespace

void WriteKml(const std::vector<DocumentTrack>& tracks, const TextSink& sink) {
    bool goesOn = sink(kHead);
    for (const DocumentTrack& track : tracks) goesOn = goesOn && WriteTrack(track, sink);
    if (goesOn) sink("</Document>\n</kml>\n");
}

}  // namespace host
