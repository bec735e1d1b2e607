#include "track/simplify.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "track/geodesy.h"
#include "util/trigonometry.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

// Beyond this a tolerance spans the earth many times over; doubling it further could only overflow.
constexpr int kHighestLevel = 60;

struct Piece {
    std::size_t first;
    std::size_t last;
    int depth;  // how often the line was divided to come to it
};

// Where a point lies: of its 48 bytes these are all that is looked at, again and again.
struct Position {
    double latitude;
    double longitude;
};
using Positions = std::vector<Position>;

// Whether the shorter way between any two of these may lead across the 180th meridian, or a position may be
// none that can be computed with. Otherwise neither has to be looked for, point by point.
bool AreSpecial(const Positions& positions) {
    double west = positions.front().longitude;
    double east = west;
    for (const Position& position : positions) {
        if (!(std::fabs(position.latitude) <= 90.0 && std::fabs(position.longitude) <= 360.0)) return true;
        west = std::min(west, position.longitude);
        east = std::max(east, position.longitude);
    }
    return east - west > 180.0;
}

// The plane in which the points of one piece are measured: degrees of arc, x east and y north of the piece's
// first point.
template <bool areSpecial>
class LocalPlane {
 public:
    LocalPlane(const Position& first, const Position& last)
        : m_origin(first),
          m_shrink(trigonometry::Cosine((first.latitude + last.latitude) * 0.5 * geodesy::kDegToRad)) {
        m_endX = East(last);
        m_endY = North(last);
        m_squaredLength = m_endX * m_endX + m_endY * m_endY;
    }

    // From the piece, squared; endless where a position is none.
    double SquaredDistance(const Position& position) const {
        const double squared = Squared(East(position), North(position));
        return areSpecial && std::isnan(squared) ? std::numeric_limits<double>::infinity() : squared;
    }

 private:
    static double Square(double value) { return value * value; }
    double Squared(double x, double y) const {
        const double along = x * m_endX + y * m_endY;
        if (along <= 0.0) return x * x + y * y;
        if (along >= m_squaredLength) return Square(x - m_endX) + Square(y - m_endY);
        return Square(x * m_endY - y * m_endX) / m_squaredLength;
    }
    double North(const Position& position) const { return position.latitude - m_origin.latitude; }
    double East(const Position& position) const {
        double degrees = position.longitude - m_origin.longitude;
        if constexpr (areSpecial) {
            if (degrees > 180.0) degrees -= 360.0;  // the shorter way
            if (degrees < -180.0) degrees += 360.0;
        }
        return degrees * m_shrink;
    }

    Position m_origin;
    double m_shrink;
    double m_endX;
    double m_endY;
    double m_squaredLength;
};

// The point between the ends that is farthest from the piece, and how far. A distance that is no number is the
// farthest.
struct Farthest {
    std::size_t index;
    double squaredDistance;
};

template <bool areSpecial>
Farthest FindFarthest(const Positions& positions, const Piece& piece) {
    const LocalPlane<areSpecial> plane(positions[piece.first], positions[piece.last]);
    Farthest farthest{piece.first, -1.0};
    for (std::size_t i = piece.first + 1; i < piece.last; ++i) {
        const double squared = plane.SquaredDistance(positions[i]);
        // Two choices of a value, not a jump: which point is farther than all before it cannot be foretold.
        const bool isFarther = squared > farthest.squaredDistance;
        farthest.index = isFarther ? i : farthest.index;
        farthest.squaredDistance = isFarther ? squared : farthest.squaredDistance;
    }
    return farthest;
}

// Dividing at the farthest point keeps the fewest points, but a line made for it can be divided one point at a
// time, which takes a time that grows with the square of its length. A piece this deep is divided in the middle
// instead: a few points more, and never farther from the line.
int DeepestByDistance(std::size_t count) { return 2 * static_cast<int>(std::bit_width(count)) + 8; }

std::size_t DivisionOf(const Piece& piece, const Farthest& farthest, int deepest) {
    return piece.depth < deepest ? farthest.index : piece.first + (piece.last - piece.first) / 2;
}

Positions PositionsOf(const Points& points) {
    Positions positions;
    positions.reserve(points.size());
    for (const TckPt& point : points) positions.push_back({point.dLatitude, point.dLongitude});
    return positions;
}

std::vector<char> PointsToKeep(const Points& points, double tolerance) {
    const Positions positions = PositionsOf(points);
    const auto findFarthest = AreSpecial(positions) ? FindFarthest<true> : FindFarthest<false>;
    std::vector<char> keep(points.size(), 0);
    keep.front() = keep.back() = 1;
    const int deepest = DeepestByDistance(points.size());
    std::vector<Piece> open{{0, points.size() - 1, 0}};
    while (!open.empty()) {
        const Piece piece = open.back();
        open.pop_back();
        if (piece.last - piece.first < 2) continue;
        const Farthest farthest = findFarthest(positions, piece);
        if (farthest.squaredDistance <= tolerance * tolerance) continue;
        const std::size_t division = DivisionOf(piece, farthest, deepest);
        keep[division] = 1;
        open.push_back({piece.first, division, piece.depth + 1});
        open.push_back({division, piece.last, piece.depth + 1});
    }
    return keep;
}

void ThinByDistance(Points& points, double tolerance) {
    if (points.size() < 3 || !(tolerance > 0.0)) return;
    const std::vector<char> keep = PointsToKeep(points, tolerance);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < points.size(); ++i)
        if (keep[i]) points[kept++] = points[i];
    points.resize(kept);
}

bool AtOnePlace(const TckPt& a, const TckPt& b) {
    return a.dLatitude == b.dLatitude && a.dLongitude == b.dLongitude;
}

void RemoveRepeatedPositions(Points& points) {
    if (points.size() < 3) return;
    const TckPt last = points.back();
    points.erase(std::unique(points.begin(), points.end(), AtOnePlace), points.end());
    if (points.size() > 1 && AtOnePlace(points.back(), last))
        points.back() = last;
    else if (points.size() == 1)
        points.push_back(last);
}

}  // namespace

void CDilutionPt::SetSimplifyDis(double degrees) { m_dSimplifyDis = degrees; }
void CDilutionPt::SetOnceSimpPt(unsigned int points) { m_uOnceSimpPt = points; }
void CDilutionPt::SetEpurate(bool epurate) { m_bEpurate = epurate; }

void CDilutionPt::SimplifyPt(std::vector<TckPt, je_allocator<TckPt>>& pts) const {
    SimplifyPt(pts, 0, false, true);
}

void CDilutionPt::SimplifyPt(std::vector<TckPt, je_allocator<TckPt>>& pts, int level, bool, bool) const {
    if (m_bEpurate) RemoveRepeatedPositions(pts);
    ThinByDistance(pts, std::ldexp(m_dSimplifyDis, std::clamp(level, 0, kHighestLevel)));
}
