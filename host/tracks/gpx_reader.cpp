#include "host/tracks/gpx_reader.h"

#include <limits>

#include "host/text/iso_time.h"
#include "host/text/number_text.h"
#include "host/tracks/gpx_color.h"
#include "host/tracks/storable_altitude.h"

namespace host {
namespace {

constexpr std::size_t kLongestText = 4096;  // of an element that we look at

bool IsWithin(const std::optional<double>& value, double limit) {
    return value && *value >= -limit && *value <= limit;
}

std::optional<double> NumberIn(const char* text) { return text == nullptr ? std::nullopt : ReadNumber(text); }

class TrackEvents : public XmlEvents {
 public:
    explicit TrackEvents(const std::function<void(GpxTrack&)>& sink) : m_sink(sink) {}

    std::string OnStart(std::string_view name, const XmlAttributes& attributes) override;
    void OnEnd() override;
    void OnText(std::string_view piece) override {
        if (m_isWanted && m_text.size() + piece.size() <= kLongestText) m_text += piece;
    }
    void HandOverOpenTrack() {
        if (m_inTrack) EndTrack();
    }
    GpxOutcome m_outcome;

 private:
    bool IsChildOf(std::string_view parent) const {
        return m_path.size() >= 2 && LocalName(m_path[m_path.size() - 2]) == parent;
    }
    void StartInDocument(std::string_view name);
    void StartInTrack(std::string_view name, const XmlAttributes& attributes);
    void StartPoint(const XmlAttributes& attributes);
    bool IsWanted(std::string_view name) const;
    void TakePointText(std::string_view name);
    void TakeTrackText(std::string_view name);
    void TakeTime();
    void EndPoint();
    void EndTrack();

    const std::function<void(GpxTrack&)>& m_sink;
    std::vector<std::string> m_path;  // the open elements, as they are written
    std::size_t m_extensions = 0;     // how many elements deep the open extensions are; 0 when none is open
    std::string m_text;
    bool m_isWanted = false;
    bool m_inTrack = false, m_inPoint = false, m_isPointGood = false, m_isSegmentCounted = false;
    GpxTrack m_track;
    TckPt m_point{};
};

std::string TrackEvents::OnStart(std::string_view name, const XmlAttributes& attributes) {
    m_path.emplace_back(name);
    const std::string_view local = LocalName(name);
    if (m_path.size() == 1 && local != "gpx")
        return "it is no GPX document: it begins with <" + m_path[0] + ">";
    m_isWanted = false;
    m_text.clear();
    if (m_inTrack)
        StartInTrack(local, attributes);
    else
        StartInDocument(local);
    return "";
}

void TrackEvents::StartInDocument(std::string_view name) {
    const bool isTop = m_path.size() == 2;
    m_outcome.waypoints += isTop && name == "wpt";
    m_outcome.routes += isTop && name == "rte";
    m_outcome.routePoints += name == "rtept" && IsChildOf("rte");
    if (!isTop || name != "trk") return;
    ++m_outcome.tracks;
    m_inTrack = true;
    m_track = {};
    m_point = {};
}

void TrackEvents::StartInTrack(std::string_view name, const XmlAttributes& attributes) {
    if (name == "trkseg" && IsChildOf("trk")) m_isSegmentCounted = false;
    if (name == "extensions" && m_extensions == 0) m_extensions = m_path.size();
    if (name == "trkpt" && !m_inPoint && m_extensions == 0)
        StartPoint(attributes);
    else
        m_isWanted = IsWanted(name);
}

void TrackEvents::StartPoint(const XmlAttributes& attributes) {
    const auto latitude = NumberIn(attributes.Find("lat")), longitude = NumberIn(attributes.Find("lon"));
    m_inPoint = true;
    m_isPointGood = IsWithin(latitude, 90) && IsWithin(longitude, 180);
    if (!m_isPointGood) return;
    m_point.dLatitude = *latitude;
    m_point.dLongitude = *longitude;
    m_point.dSpeed = 0;
    m_point.fCourse = 0;
}

bool TrackEvents::IsWanted(std::string_view name) const {
    const bool isMotion = name == "speed" || name == "course";
    if (m_inPoint && m_extensions != 0) return isMotion;
    if (m_inPoint) return IsChildOf("trkpt") && (isMotion || name == "ele" || name == "time");
    if (m_extensions != 0) return name == "color" || name == "DisplayColor";
    return IsChildOf("trk") && name == "name";
}

void TrackEvents::OnEnd() {
    const std::string name(LocalName(m_path.back()));
    if (m_isWanted) {
        m_inPoint ? TakePointText(name) : TakeTrackText(name);
        m_isWanted = false;
    } else if (m_inPoint && m_extensions == 0 && name == "trkpt") {
        EndPoint();
    } else if (m_inTrack && m_path.size() == 2) {
        EndTrack();
    }
    if (m_extensions == m_path.size()) m_extensions = 0;
    m_path.pop_back();
}

// An element without text says nothing; that is common and no mistake.
void TrackEvents::TakePointText(std::string_view name) {
    if (WithoutBlanks(m_text).empty()) return;
    if (name == "time") return TakeTime();
    const std::optional<double> number = ReadNumber(m_text);
    const double limit = name == "ele" ? 1e9 : name == "speed" ? 1e6 : 720;
    if (!IsWithin(number, limit) || (name == "speed" && *number < 0)) {
        ++m_track.badNumbers;
    } else if (name == "ele") {
        m_point.dAltitude = MeasuredAltitude(*number);
    } else if (name == "speed") {
        m_point.dSpeed = *number;
    } else {
        m_point.fCourse = static_cast<float>(*number);
    }
}

void TrackEvents::TakeTime() {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto time = ReadIsoTime(m_text);
    if (time && *time >= Limits::min() && *time <= Limits::max() && *time != 0)
        m_point.lTime = static_cast<std::int32_t>(*time);
    else
        ++m_track.badTimes;
}

void TrackEvents::TakeTrackText(std::string_view name) {
    if (name == "name")
        m_track.name = std::string(WithoutBlanks(m_text));
    else if (const auto color = ReadGpxColor(m_path.back(), IsChildOf("extensions"), WithoutBlanks(m_text)))
        m_track.color = color;
}

void TrackEvents::EndPoint() {
    m_inPoint = false;
    if (!m_isPointGood) {
        ++m_track.badPositions;
        return;
    }
    m_track.segments += !m_isSegmentCounted || m_track.points.empty();
    m_isSegmentCounted = true;
    m_track.points.push_back(m_point);
}

void TrackEvents::EndTrack() {
    m_inTrack = m_inPoint = false;
    m_extensions = 0;
    m_sink(m_track);
    m_track = {};
}

}  // namespace

GpxOutcome ReadGpx(FileReader& file, const std::function<void(GpxTrack&)>& sink) {
    TrackEvents events(sink);
    const XmlOutcome xml = ReadXml(file, events);
    events.HandOverOpenTrack();
    events.m_outcome.xml = xml;
    return events.m_outcome;
}

}  // namespace host
