#include "host/tracks/elevation.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

struct Height {
    double distance;  // [m] along the track
    double altitude;  // [m]
};

std::vector<Height> KnownHeights(const Points& points, const std::vector<double>& distances) {
    std::vector<Height> heights;
    for (std::size_t i = 0; i < points.size(); ++i)
        if (KnowsAltitude(points[i]))
            heights.push_back({distances[i], points[i].dAltitude + 0.0});  // no -0 for the user
    return heights;
}

std::vector<double> Smoothed(const std::vector<Height>& heights) {
    std::vector<double> smoothed;
    smoothed.reserve(heights.size());
    std::size_t first = 0, end = 0;
    double sum = 0;
    for (const Height& at : heights) {
        for (; end < heights.size() && heights[end].distance <= at.distance + kSmoothedWay; ++end)
            sum += heights[end].altitude;
        for (; heights[first].distance < at.distance - kSmoothedWay; ++first) sum -= heights[first].altitude;
        smoothed.push_back(sum / static_cast<double>(end - first));
    }
    return smoothed;
}

// Adds up the legs between turning points. A turn counts once the way back from it is kLeastClimb high.
class Legs {
 public:
    explicit Legs(double altitude) : m_turn(altitude), m_low(altitude), m_high(altitude) {}

    void Reach(double altitude) {
        m_low = std::min(m_low, altitude);
        m_high = std::max(m_high, altitude);
        if (m_direction <= 0 && altitude - m_low >= kLeastClimb) {
            EndLeg();
            m_turn = m_low;
            m_high = altitude;
            m_direction = 1;
        } else if (m_direction >= 0 && m_high - altitude >= kLeastClimb) {
            EndLeg();
            m_turn = m_high;
            m_low = altitude;
            m_direction = -1;
        }
    }

    void EndLeg() {
        if (m_direction > 0) m_ascent += m_high - m_turn;
        if (m_direction < 0) m_descent += m_turn - m_low;
    }

    double Ascent() const { return m_ascent; }
    double Descent() const { return m_descent; }

 private:
    int m_direction = 0;           // 1 up, -1 down, 0 before the first leg
    double m_turn, m_low, m_high;  // where the leg began; lowest and highest since
    double m_ascent = 0, m_descent = 0;
};

}  // namespace

std::vector<double> DistancesAlong(const Points& points) {
    std::vector<double> distances;
    distances.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        double step = 0, bearing = 0;
        if (i != 0)
            CalDistance(points[i].dLatitude, points[i].dLongitude, points[i - 1].dLatitude,
                        points[i - 1].dLongitude, 0, &step, &bearing);
        distances.push_back(i == 0 ? 0 : distances.back() + step);
    }
    return distances;
}

std::optional<Elevation> ElevationOf(const Points& points, const std::vector<double>& distances) {
    const std::vector<Height> heights = KnownHeights(points, distances);
    if (heights.empty()) return std::nullopt;
    const std::vector<double> smoothed = Smoothed(heights);
    Legs legs(smoothed.front());
    for (const double altitude : smoothed) legs.Reach(altitude);
    legs.EndLeg();
    const auto [lowest, highest] =
        std::minmax_element(heights.begin(), heights.end(),
                            [](const Height& a, const Height& b) { return a.altitude < b.altitude; });
    return Elevation{legs.Ascent(), legs.Descent(), lowest->altitude, highest->altitude};
}

}  // namespace host
