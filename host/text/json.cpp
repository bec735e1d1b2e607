#include "host/text/json.h"

#include <iostream>

#include "host/settings/host_settings.h"
#include "host/text/display_width.h"
#include "host/text/iso_time.h"
#include "host/text/text.h"

namespace host {
namespace {

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json BoundsJson(const std::optional<Bounds>& bounds) {
    if (!bounds) return nullptr;
    return {{"south", bounds->south}, {"west", bounds->west}, {"north", bounds->north}, {"east", bounds->east}};
}

}  // namespace

Json IsoTime(std::optional<long> seconds) {
    return seconds.value_or(0) == 0 ? Json(nullptr) : Json(IsoText(*seconds));
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json TrackJson(const TrackHeader& header) {
    return {{"name", ToUtf8(header.name)},
            {"file", ToUtf8(header.file) + ".gpx"},
            {"points", header.points},
            {"length", header.length},
            {"area", header.area},
            {"start", IsoTime(header.start)},
            {"end", IsoTime(header.end)},
            {"duration", header.HasTimes() ? Json(header.end - header.start) : Json(nullptr)},
            {"color", ColorText(header.color)},
            {"shown", header.shown}};
}

Json TrackJson(CTrackProxy& track) { return TrackJson(HeaderOf(track)); }

Json PointJson(const TckPt& point, bool withMotion) {
    Json json = {{"latitude", point.dLatitude},
                 {"longitude", point.dLongitude},
                 {"altitude", KnowsAltitude(point) ? Json(point.dAltitude + 0.0) : Json(nullptr)},
                 {"time", IsoTime(point.lTime)}};
    if (!withMotion) return json;
    json["speed"] = point.dSpeed;
    json["course"] = point.fCourse;
    return json;
}

Json StatisticsJson(const Statistics& s) {
    const auto elevation = [&s](double Elevation::*part) {
        return s.elevation ? Json((*s.elevation).*part) : Json(nullptr);
    };
    return {{"points", s.points},
            {"start", IsoTime(s.start)},
            {"end", IsoTime(s.end)},
            {"duration", OrNull(s.duration)},
            {"moving_time", OrNull(s.movingTime)},
            {"stopped_time", OrNull(s.stoppedTime)},
            {"unrecorded_time", OrNull(s.unrecordedTime)},
            {"length", s.length},
            {"average_speed", OrNull(s.averageSpeed)},
            {"moving_speed", OrNull(s.movingSpeed)},
            {"greatest_speed", OrNull(s.greatestSpeed)},
            {"ascent", elevation(&Elevation::ascent)},
            {"descent", elevation(&Elevation::descent)},
            {"lowest", elevation(&Elevation::lowest)},
            {"highest", elevation(&Elevation::highest)},
            {"area", s.area},
            {"bounds", BoundsJson(s.bounds)},
            {"computed_from", s.basis}};
}

std::string JsonText(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

void PrintJson(const Json& json) {
    std::cout << EscapeControls(json.dump(2, ' ', false, Json::error_handler_t::replace)) << '\n';
}

}  // namespace host
