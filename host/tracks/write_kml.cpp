// Tracks as KML 2.2 with the extension for tracks in time.
#include "host/settings/host_settings.h"
#include "host/text/iso_time.h"
#include "host/text/number_text.h"
#include "host/tracks/track_document.h"

namespace host {
namespace {

constexpr const char* kHead =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<kml xmlns="http://www.opengis.net/kml/2.2" xmlns:gx="http://www.google.com/kml/ext/2.2">
<Document>
)";

std::string Coordinates(const TckPt& point, char separator, bool withAltitude) {
    std::string text = ExactText(point.dLongitude) + separator + ExactText(point.dLatitude);
    if (withAltitude) text += separator + SingleText(point.dAltitude);
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

// A track in time has an altitude in any case.
bool WriteInTime(const Segment& segment, bool withAltitude, const TextSink& sink) {
    bool goesOn = sink("<gx:Track>" + AltitudeMode(withAltitude) + "\n");
    for (std::size_t i = 0; goesOn && i < segment.size(); ++i)
        goesOn = sink("<when>" + IsoText(segment[i].lTime) + "</when>\n");
    for (std::size_t i = 0; goesOn && i < segment.size(); ++i)
        goesOn = sink("<gx:coord>" + Coordinates(segment[i], ' ', true) + "</gx:coord>\n");
    return goesOn && sink("</gx:Track>\n");
}

bool WriteLine(const Segment& segment, bool withAltitude, const TextSink& sink) {
    bool goesOn =
        sink("<LineString><tessellate>1</tessellate>" + AltitudeMode(withAltitude) + "<coordinates>\n");
    for (std::size_t i = 0; goesOn && i < segment.size(); ++i)
        goesOn = sink(Coordinates(segment[i], ',', withAltitude) + "\n");
    return goesOn && sink("</coordinates></LineString>\n");
}

bool WriteTrack(const DocumentTrack& track, const TextSink& sink) {
    const bool inTime = track.HasTimes(), withAltitude = track.HasAltitudes();
    const std::string shape = inTime ? "gx:MultiTrack" : "MultiGeometry";
    const bool several = track.segments.size() != 1;
    bool goesOn = sink("<Placemark>\n<name>" + XmlText(track.name) + "</name>\n<Style><LineStyle><color>" +
                       ColorOf(track) + "</color><width>3</width></LineStyle></Style>\n" +
                       (several ? "<" + shape + ">\n" : ""));
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
