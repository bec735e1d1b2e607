#include "host/page/event_stream.h"

#include <array>
#include <charconv>

#include "host/page/drawn_track.h"
#include "host/text/json.h"

namespace host {
namespace {

std::string IdOf(const FeedPlace& place) {
    return std::to_string(place.run) + '-' + std::to_string(place.points) + '-' + std::to_string(place.status) +
           '-' + std::to_string(place.library);
}

std::string Event(const std::string& name, const Json& data) {
    return "event: " + name + "\ndata: " + JsonText(data) + "\n\n";
}

Json PointsJson(const std::vector<LivePoint>& points) {
    DrawnPoints drawn;
    for (std::size_t i = 0; i < points.size(); ++i) {
        drawn.points.push_back(points[i].point);
        drawn.distances.push_back(points[i].distance);
        drawn.speeds.emplace_back(points[i].point.dSpeed);
        if (points[i].beginsPiece) drawn.breaks.push_back(i);
    }
    return DrawnPointsJson(drawn);
}

Json StatusJson(const LiveStatus& status) {
    constexpr std::array<const char*, 3> kStates = {"library", "recording", "ended"};
    return {{"state", kStates[static_cast<std::size_t>(status.state)]},
            {"speed", status.speed},
            {"length", status.length},
            {"point_count", status.points}};
}

}  // namespace

// The points come last and the id with the last event: a page that lost the connection in between hears what
// may be heard twice again, and no point twice.
std::string EventText(const FeedNews& news, const std::string& color) {
    std::string text;
    if (news.status) text += Event("status", StatusJson(*news.status));
    if (news.libraryChanged) text += Event("library", Json::object());
    if (news.isWholeTrack)
        text += Event("track", {{"color", color}, {"points", PointsJson(news.points)}});
    else if (!news.points.empty())
        text += Event("points", {{"points", PointsJson(news.points)}});
    if (text.empty()) return ": still here\n\n";
    text.insert(text.rfind("event: "), "id: " + IdOf(news.place) + '\n');
    return text;
}

FeedPlace PlaceOf(const std::string& eventId) {
    std::array<std::uint64_t, 4> numbers{};
    const char* at = eventId.data();
    const char* const end = at + eventId.size();
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto [behind, problem] = std::from_chars(at, end, numbers[i]);
        const bool isLast = i + 1 == numbers.size();
        if (problem != std::errc() || (isLast ? behind != end : behind == end || *behind != '-')) return {};
        at = behind + 1;
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

}  // namespace host
