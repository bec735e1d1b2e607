#include "host/page/drawn_track.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <utility>

#include "host/text/text.h"

namespace host {
namespace {

bool HasPosition(const TckPt& point) {
    return std::isfinite(point.dLatitude) && std::isfinite(point.dLongitude);
}

Points WithPosition(const Points& all) {
    Points good;
    std::copy_if(all.begin(), all.end(), std::back_inserter(good), HasPosition);
    return good;
}

bool IsSame(const TckPt& a, const TckPt& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The fewest doublings of the library's tolerance that leave no more than half of what is drawn.
Points Shape(const Points& all) {
    CTrack track;
    for (const TckPt& point : all) track.AppendPt(point, false);
    Points shape = all;
    for (int level = 0; shape.size() > kMostDrawnPoints / 2 && level < 24; ++level)
        track.SimplifyPt(shape, level, false);
    return shape;
}

// Indexes of the points that hold the shape, and of as many at even steps: a straight road keeps its hills.
std::vector<std::size_t> ChosenPoints(const Points& all) {
    std::vector<std::size_t> chosen;
    const bool isFew = all.size() <= kMostDrawnPoints;
    const Points shape = isFew ? Points() : Shape(all);
    const std::size_t step = isFew ? 1 : 2 * all.size() / kMostDrawnPoints + 1;
    std::size_t next = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool ofShape = next < shape.size() && IsSame(all[i], shape[next]);
        if (ofShape) ++next;
        if (ofShape || i % step == 0 || i + 1 == all.size()) chosen.push_back(i);
    }
    return chosen;
}

// The mean speed over the shortest stretch around a point that takes kSpeedWindow, without leaving its piece.
std::optional<double> SpeedAround(const Points& points, const std::vector<double>& distances, std::size_t at) {
    std::size_t from = at, to = at;
    const auto seconds = [&](std::size_t a, std::size_t b) {
        return std::labs(static_cast<long>(points[b].lTime) - points[a].lTime);
    };
    const auto canJoin = [&](std::size_t a, std::size_t b) {
        return points[a].lTime != 0 && points[b].lTime != 0 && seconds(a, b) < kGap;
    };
    while (seconds(from, to) < kSpeedWindow) {
        const bool canGoBack = from > 0 && canJoin(from - 1, from);
        const bool canGoOn = to + 1 < points.size() && canJoin(to, to + 1);
        if (!canGoBack && !canGoOn) break;
        if (canGoBack) --from;
        if (canGoOn) ++to;
    }
    if (seconds(from, to) == 0) return std::nullopt;
    return (distances[to] - distances[from]) / static_cast<double>(seconds(from, to));
}

std::vector<std::optional<double>> SpeedsAt(const Points& points, const std::vector<double>& distances,
                                            const std::vector<std::size_t>& chosen) {
    const auto hasOwn = [](const TckPt& point) { return std::isfinite(point.dSpeed) && point.dSpeed > 0; };
    const bool ownSpeeds = std::any_of(points.begin(), points.end(), hasOwn);
    std::vector<std::optional<double>> speeds;
    for (const std::size_t i : chosen)
        speeds.push_back(ownSpeeds ? std::optional(hasOwn(points[i]) ? points[i].dSpeed : 0)
                                   : SpeedAround(points, distances, i));
    return speeds;
}

// Where a chosen point has a pause between itself and the chosen one before it.
std::vector<std::size_t> BreaksIn(const Points& points, const std::vector<std::size_t>& chosen) {
    std::vector<std::size_t> breaks;
    std::size_t at = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        while (chosen[at] < i) ++at;
        const long before = points[i - 1].lTime, after = points[i].lTime;
        const bool isPause = before != 0 && after != 0 && std::labs(after - before) >= kGap;
        if (isPause && (breaks.empty() || breaks.back() != at)) breaks.push_back(at);
    }
    return breaks;
}

// Digits that nobody sees would only make the page large, and so would the sign of a 0.
double Rounded(double value, double perUnit) { return std::round(value * perUnit) / perUnit + 0.0; }

// A column of the values that are known; null when none is.
template <typename ValueAt>
Json Column(std::size_t count, ValueAt valueAt) {
    Json column = Json::array();
    bool isKnown = false;
    for (std::size_t i = 0; i < count; ++i) {
        column.push_back(valueAt(i));
        isKnown = isKnown || !column.back().is_null();
    }
    return isKnown || count == 0 ? column : Json(nullptr);
}

}  // namespace

DrawnPoints PointsToDraw(const Points& all) {
    const Points good = WithPosition(all);
    const std::vector<double> distances = DistancesAlong(good);
    const std::vector<std::size_t> chosen = ChosenPoints(good);
    DrawnPoints drawn;
    drawn.speeds = SpeedsAt(good, distances, chosen);
    for (const std::size_t i : chosen) {
        drawn.points.push_back(good[i]);
        drawn.distances.push_back(distances[i]);
    }
    drawn.breaks = BreaksIn(good, chosen);
    return drawn;
}

std::optional<DrawnTrack> ReadDrawnTrack(CTrackProxy& track) {
    Points points;
    track.GetPtList(points);
    DrawnTrack drawn;
    drawn.drawn = PointsToDraw(points);
    if (drawn.drawn.points.empty()) return std::nullopt;
    drawn.id = ToUtf8(track.GetTrkFileName()) + ".gpx";
    drawn.name = ToUtf8(track.GetName());
    drawn.color = ColorText(track.GetColor());
    drawn.shown = track.GetVisible();
    drawn.statistics = ComputeStatistics(points);
    return drawn;
}

Json DrawnPointsJson(const DrawnPoints& drawn) {
    const Points& points = drawn.points;
    const std::size_t count = points.size();
    const bool hasTimes = !points.empty() && std::all_of(points.begin(), points.end(),
                                                         [](const TckPt& point) { return point.lTime != 0; });
    return {{"lat", Column(count, [&](std::size_t i) { return Json(Rounded(points[i].dLatitude, 1e7)); })},
            {"lon", Column(count, [&](std::size_t i) { return Json(Rounded(points[i].dLongitude, 1e7)); })},
            {"dist", Column(count, [&](std::size_t i) { return Json(Rounded(drawn.distances[i], 10)); })},
            {"ele", Column(count,
                           [&](std::size_t i) {
                               return KnowsAltitude(points[i]) ? Json(Rounded(points[i].dAltitude, 10))
                                                               : Json(nullptr);
                           })},
            {"speed", Column(count,
                             [&](std::size_t i) {
                                 return drawn.speeds[i] ? Json(Rounded(*drawn.speeds[i], 100)) : Json(nullptr);
                             })},
            {"time",
             hasTimes ? Column(count, [&](std::size_t i) { return Json(points[i].lTime); }) : Json(nullptr)},
            {"breaks", drawn.breaks}};
}

Json DrawnTrackJson(const DrawnTrack& track) {
    const Statistics& statistics = track.statistics;
    return {{"id", track.id},
            {"name", track.name},
            {"color", track.color},
            {"shown", track.shown},
            {"length", statistics.length},
            {"start", IsoTime(statistics.start)},
            {"end", IsoTime(statistics.end)},
            {"statistics", StatisticsJson(statistics)},
            {"points", DrawnPointsJson(track.drawn)}};
}

}  // namespace host
