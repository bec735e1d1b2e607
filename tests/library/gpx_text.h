// Stored tracks as text: written by the tests, and read back by a plain search, both without the library.
#pragma once

#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

// Seconds since 1970 of a calendar time.
inline long SecondsOf(int year, unsigned month, unsigned day, int hour, int minute, int second) {
    using namespace std::chrono;
    const sys_days date = std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day};
    return static_cast<long>(
        (date.time_since_epoch() + hours{hour} + minutes{minute} + seconds{second}).count());
}

// A point as its document has it; an empty text means that the element is not there.
struct TextPoint {
    std::string lat, lon, ele, time;
    bool operator==(const TextPoint&) const = default;
};

// A document in our form. An empty text means that the element is not there.
struct StoredTrack {
    std::string name = "Morning ride";
    std::string number = "3";
    std::string color = "255";
    std::string visible = "1";
    std::string length = "1234.500000";
    std::string area = "77.250000";
    std::string startTime = "2014-05-01T10:00:00Z";
    std::string endTime = "2014-05-01T11:00:00Z";
    std::vector<std::vector<TextPoint>> segments = {
        {{"1.000000", "2.000000", "5.000000", "2014-05-01T10:00:00Z"},
         {"1.001000", "2.000000", "6.000000", "2014-05-01T10:30:00Z"},
         {"1.001000", "2.001000", "7.000000", "2014-05-01T11:00:00Z"}}};
};

inline std::string ElementText(const std::string& name, const std::string& value) {
    return value.empty() ? "" : "<" + name + ">" + value + "</" + name + ">\r\n";
}

inline std::string SegmentText(const std::vector<TextPoint>& points) {
    std::string text = "<trkseg>\r\n";
    for (const TextPoint& point : points)
        text += "<trkpt lat=\"" + point.lat + "\" lon=\"" + point.lon + "\">" + ElementText("ele", point.ele) +
                ElementText("time", point.time) + "</trkpt>\r\n";
    return text + "</trkseg>\r\n";
}

// The document, with line ends that reading leaves as they are.
inline std::string TextOf(const StoredTrack& track) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<gpx version=\"1.0\">\r\n<trk>\r\n";
    text += ElementText("name", track.name) + ElementText("number", track.number) + "<extensions>\r\n";
    text += ElementText("color", track.color) + ElementText("visible", track.visible);
    text += ElementText("length", track.length) + ElementText("area", track.area);
    text +=
        ElementText("starttime", track.startTime) + ElementText("endtime", track.endTime) + "</extensions>\r\n";
    for (const auto& segment : track.segments) text += SegmentText(segment);
    return text + "</trk>\r\n</gpx>\r\n";
}

// What stands between the first <name> and its end; nothing when there is no such element.
inline std::optional<std::string> Inside(const std::string& text, const std::string& name) {
    const std::size_t tag = text.find("<" + name);
    if (tag == std::string::npos) return std::nullopt;
    const std::size_t start = text.find('>', tag) + 1;
    if (text[start - 2] == '/') return "";
    return text.substr(start, text.find("</" + name + ">", start) - start);
}

inline std::string Attribute(const std::string& tag, const std::string& name) {
    const std::size_t start = tag.find(" " + name + "=\"") + name.size() + 3;
    return tag.substr(start, tag.find('"', start) - start);
}

inline std::vector<TextPoint> PointsIn(const std::string& document) {
    std::vector<TextPoint> points;
    for (std::size_t at = document.find("<trkpt"); at != std::string::npos;
         at = document.find("<trkpt", at + 1)) {
        const std::string rest = document.substr(at, document.find("<trkpt", at + 1) - at);
        const std::string body = rest.substr(0, rest.find("</trkpt>"));
        points.push_back({Attribute(body, "lat"), Attribute(body, "lon"), Inside(body, "ele").value_or(""),
                          Inside(body, "time").value_or("")});
    }
    return points;
}

// The texts of a document in our form, read back.
inline StoredTrack ReadBack(const std::string& document) {
    const std::string track = Inside(document, "trk").value_or("");
    const std::string header = track.substr(0, track.find("<trkseg"));
    const auto text = [&](const char* name) { return Inside(header, name).value_or(""); };
    return {text("name"), text("number"),    text("color"),   text("visible"),     text("length"),
            text("area"), text("starttime"), text("endtime"), {PointsIn(document)}};
}
