#include "host/tracks/statistics.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include "host/text/text.h"

namespace host {
namespace {

// A point that knows its time.
struct Timed {
    long time;        // [s] growing along the track
    double distance;  // [m] along the track
    double speed;     // [m/s] the point's own
};

Points WithPosition(const Points& points) {
    Points good;
    std::copy_if(points.begin(), points.end(), std::back_inserter(good), [](const TckPt& point) {
        return std::isfinite(point.dLatitude) && std::isfinite(point.dLongitude);
    });
    return good;
}

bool HasOwnSpeed(const TckPt& point) { return std::isfinite(point.dSpeed) && point.dSpeed > 0; }

// Of points within one second the first counts: the way of the others belongs to the next step.
std::vector<Timed> TimedPoints(const Points& points, const std::vector<double>& distances) {
    std::vector<Timed> timed;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TckPt& point = points[i];
        if (point.lTime == 0 || (!timed.empty() && timed.back().time == point.lTime)) continue;
        timed.push_back({point.lTime, distances[i], HasOwnSpeed(point) ? point.dSpeed : 0});
    }
    if (!timed.empty() && timed.back().time < timed.front().time)
        for (Timed& point : timed) point.time = -point.time;
    return timed;
}

struct Motion {
    long moving = 0, stopped = 0, unrecorded = 0;  // [s]
    double way = 0;                                // [m] while moving
};

void AddStep(const Timed& from, const Timed& to, bool ownSpeeds, Motion& motion) {
    const long seconds = to.time - from.time;
    const double way = to.distance - from.distance;
    if (seconds <= 0) return;
    if (seconds >= kGap && way > kSamePlace) {
        motion.unrecorded += seconds;
        return;
    }
    const bool byOwn = ownSpeeds && seconds <= kLongStep;
    const double speed = byOwn ? (from.speed + to.speed) / 2 : way / static_cast<double>(seconds);
    if (speed >= kMovingSpeed && seconds < kGap) {
        motion.moving += seconds;
        motion.way += way;
    } else {
        motion.stopped += seconds;
    }
}

Motion MotionOf(const std::vector<Timed>& timed, bool ownSpeeds) {
    Motion motion;
    for (std::size_t i = 1; i < timed.size(); ++i) AddStep(timed[i - 1], timed[i], ownSpeeds, motion);
    return motion;
}

double GreatestOwnSpeed(const Points& points) {
    double greatest = 0;
    for (const TckPt& point : points)
        if (HasOwnSpeed(point)) greatest = std::max(greatest, point.dSpeed);
    return greatest;
}

// Over the shortest run of steps of at least kSpeedWindow that ends at each point.
std::optional<double> GreatestSpeed(const std::vector<Timed>& timed) {
    std::optional<double> greatest;
    std::size_t from = 0;
    for (std::size_t to = 1; to < timed.size(); ++to) {
        if (timed[to].time <= timed[to - 1].time) from = to;
        while (from < to && timed[to].time - timed[from + 1].time >= kSpeedWindow) ++from;
        const long seconds = timed[to].time - timed[from].time;
        if (seconds < kSpeedWindow) continue;
        const double speed = (timed[to].distance - timed[from].distance) / static_cast<double>(seconds);
        greatest = std::max(greatest.value_or(0), speed);
    }
    return greatest;
}

// The earlier and the later of the first and the last point that know their time, of which there is one.
std::pair<long, long> EndTimes(const Points& points) {
    const auto knowsTime = [](const TckPt& point) { return point.lTime != 0; };
    const long first = std::find_if(points.begin(), points.end(), knowsTime)->lTime;
    const long last = std::find_if(points.rbegin(), points.rend(), knowsTime)->lTime;
    return {std::min(first, last), std::max(first, last)};
}

void AddTimes(const Points& points, const std::vector<Timed>& timed, bool ownSpeeds, Statistics& statistics) {
    if (ownSpeeds) statistics.greatestSpeed = GreatestOwnSpeed(points);
    if (timed.empty()) return;
    const auto [start, end] = EndTimes(points);
    statistics.start = start;
    statistics.end = end;
    statistics.duration = end - start;
    const Motion motion = MotionOf(timed, ownSpeeds);
    statistics.movingTime = motion.moving;
    statistics.stoppedTime = motion.stopped;
    statistics.unrecordedTime = motion.unrecorded;
    if (end > start) statistics.averageSpeed = statistics.length / static_cast<double>(end - start);
    if (motion.moving > 0) statistics.movingSpeed = motion.way / static_cast<double>(motion.moving);
    if (!ownSpeeds) statistics.greatestSpeed = GreatestSpeed(timed);
}

std::string Basis(const Statistics& statistics, std::size_t withoutPosition, bool ownSpeeds) {
    std::string text = Counted(statistics.points, "point", "points");
    if (withoutPosition != 0) text += ", " + std::to_string(withoutPosition) + " of them without position";
    if (!statistics.start) text += "; no times";
    if (ownSpeeds)
        text += "; speeds from the points' own";
    else if (statistics.averageSpeed)
        text += "; speeds from positions and times";
    if (!statistics.elevation) text += "; no altitudes";
    return text;
}

}  // namespace

Statistics ComputeStatistics(const Points& allPoints) {
    const Points points = WithPosition(allPoints);
    const std::vector<double> distances = DistancesAlong(points);
    const bool ownSpeeds = std::any_of(points.begin(), points.end(), HasOwnSpeed);
    Statistics statistics;
    statistics.points = allPoints.size();
    statistics.length = distances.empty() ? 0 : distances.back();
    statistics.elevation = ElevationOf(points, distances);
    statistics.area = AreaOf(points);
    statistics.bounds = BoundsOf(points);
    AddTimes(points, TimedPoints(points, distances), ownSpeeds, statistics);
    statistics.basis = Basis(statistics, allPoints.size() - points.size(), ownSpeeds);
    return statistics;
}

}  // namespace host
