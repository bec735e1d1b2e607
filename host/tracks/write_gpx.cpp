// Tracks as GPX 1.1.
#include <cmath>

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
<gpx version="1.1" creator="qtrace" xmlns="http://www.topografix.com/GPX/1/1")"
    R"( xmlns:gpxtpx="http://www.garmin.com/xmlschemas/TrackPointExtension/v2")"
    R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    R"( xsi:schemaLocation="http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd)"
    R"( http://www.garmin.com/xmlschemas/TrackPointExtension/v2)"
    R"( http://www8.garmin.com/xmlschemas/TrackPointExtensionv2.xsd">
)";

std::string Element(const char* name, const std::string& text) {
    return std::string("<") + name + '>' + text + "</" + name + '>';
}

// The schema wants a course from 0 to below 360.
std::string Motion(const TckPt& point) {
    if (point.dSpeed == 0 && point.fCourse == 0) return "";
    double course = std::fmod(static_cast<double>(point.fCourse), 360);
    if (course < 0) course += 360;
    return "<extensions><gpxtpx:TrackPointExtension>" + Element("gpxtpx:speed", ExactText(point.dSpeed)) +
           Element("gpxtpx:course", SingleText(course)) + "</gpxtpx:TrackPointExtension></extensions>";
}

std::string PointText(const TckPt& point) {
    std::string text =
        "      <trkpt lat=\"" + ExactText(point.dLatitude) + "\" lon=\"" + ExactText(point.dLongitude) + "\">";
    if (KnowsAltitude(point)) text += Element("ele", SingleText(point.dAltitude));
    if (point.lTime != 0) text += Element("time", IsoText(point.lTime));
    return text + Motion(point) + "</trkpt>\n";
}

bool WriteTrack(const DocumentTrack& track, const TextSink& sink) {
    bool goesOn = sink("  <trk>\n    " + Element("name", MarkupText(track.name)) +
                       "\n    <extensions><line xmlns=\"http://www.topografix.com/GPX/gpx_style/0/2\">" +
                       Element("color", ColorText(track.color).substr(1)) + "</line></extensions>\n");
    for (const Segment& segment : track.segments) {
        goesOn = goesOn && sink("    <trkseg>\n");
        for (std::size_t i = 0; goesOn && i < segment.size(); ++i) goesOn = sink(PointText(segment[i]));
        goesOn = goesOn && sink("    </trkseg>\n");
    }
    return goesOn && sink("  </trk>\n");
}

}  // namespace

void WriteGpx(const std::vector<DocumentTrack>& tracks, const TextSink& sink) {
    bool goesOn = sink(kHead);
    for (const DocumentTrack& track : tracks) goesOn = goesOn && WriteTrack(track, sink);
    if (goesOn) sink("</gpx>\n");
}

}  // namespace host
