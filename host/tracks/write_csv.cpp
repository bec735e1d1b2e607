// Tracks as a table.
#include "host/text/iso_time.h"
#include "host/text/number_text.h"
#include "host/tracks/storable_altitude.h"
#include "host/tracks/track_document.h"

namespace host {
namespace {

// Quoted, so that commas, quotes and line ends of a name stay within its cell.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

std::string Row(const TckPt& point) {
    const bool hasMotion = point.dSpeed != 0 || point.fCourse != 0;
    return ',' + ExactText(point.dLatitude) + ',' + ExactText(point.dLongitude) + ',' +
           (KnowsAltitude(point) ? SingleText(point.dAltitude) : "") + ',' +
           (point.lTime != 0 ? IsoText(point.lTime) : "") + ',' + (hasMotion ? ExactText(point.dSpeed) : "") +
           ',' + (hasMotion ? SingleText(point.fCourse) : "") + '\n';
}

}  // namespace

void WriteCsv(const std::vector<DocumentTrack>& tracks, const TextSink& sink) {
    bool goesOn = sink("track,segment,latitude,longitude,altitude_m,time,speed_m_s,course_deg\n");
    for (const DocumentTrack& track : tracks) {
        for (std::size_t number = 0; number < track.segments.size(); ++number)
            for (const TckPt& point : track.segments[number])
                goesOn = goesOn && sink(Quoted(track.name) + ',' + std::to_string(number + 1) + Row(point));
    }
}

}  // namespace host
