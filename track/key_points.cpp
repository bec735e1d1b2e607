// Key points: where the motion starts, stops or turns, and one about every ten seconds of movement.
// Thinning by distance instead: track/thinning.cpp.
#include <cmath>

#include "track/track.h"

namespace {

constexpr double kTurn = 6.0;          // [deg]
constexpr double kReversal = 180.0;    // [deg]
constexpr double kReversalBand = 1.0;  // [deg] to both sides, not included
constexpr double kMovement = 0.00001;  // [deg] latitude and longitude added
constexpr double kSecondsBetweenKeys = 10.0;

double CourseChange(const TckPt& from, const TckPt& to) { return std::fabs(to.fCourse - from.fCourse); }

bool HasMoved(const TckPt& from, const TckPt& to) {
    return std::fabs(to.dLongitude - from.dLongitude) + std::fabs(to.dLatitude - from.dLatitude) > kMovement;
}

bool IsDue(const TckPt& from, const TckPt& to) {
    return static_cast<double>(to.lTime) - static_cast<double>(from.lTime) >= kSecondsBetweenKeys;
}

// Whether a point that neither starts nor stops the motion is a key point after `last`. Going back by which one
// came is no turn worth showing, and makes no test of time either.
bool IsKeyInMotion(const TckPt& last, const TckPt& point) {
    const double turn = CourseChange(last, point);
    if (turn >= kTurn && std::fabs(turn - kReversal) < kReversalBand) return false;
    return HasMoved(last, point) && (turn >= kTurn || IsDue(last, point));
}

// The indices of the key points but the first point, which always leads.
std::vector<std::size_t> KeyIndices(const std::vector<TckPt, je_allocator<TckPt>>& points) {
    std::vector<std::size_t> keys;
    std::size_t last = 0;
    bool stopped = false;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const bool standing = points[i].dSpeed == 0.0;
        if (standing == stopped && !IsKeyInMotion(points[last], points[i])) continue;
        keys.push_back(i);
        last = i;
        stopped = standing;
    }
    return keys;
}

}  // namespace

void CTrack::GetKeyPtList(std::vector<TckPt, je_allocator<TckPt>>& out) {
    if (m_vecPtLst.empty()) return;
    const std::vector<std::size_t> keys = KeyIndices(m_vecPtLst);
    const std::size_t end = m_vecPtLst.size() - 1;

    out.clear();
    out.reserve(keys.size() + 2);
    out.push_back(m_vecPtLst.front());
    for (const std::size_t key : keys) out.push_back(m_vecPtLst[key]);
    if (end != 0 && (keys.empty() || keys.back() != end)) out.push_back(m_vecPtLst.back());
}
