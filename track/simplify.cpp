#include "track/simplify.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "track/geodesy.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

// Beyond this a tolerance spans the earth many times over; doubling it further could only overflow.
constexpr int kHighestLevel = 60;

struct Piece {
    std::size_t first;
    std::size_t last;
    int depth;  // how often the line was divided to come to it
};

// The plane in which the points of one piece are measured: degrees of arc, x east and y north of the piece's
// first point.
class LocalPlane {
 public:
    LocalPlane(const TckPt& first, const TckPt& last)
        : m_origin(first), m_shrink(std::cos((first.dLatitude + last.dLatitude) * 0.5 * geodesy::kDegToRad)) {
        m_endX = East(last);
        m_endY = North(last);
        m_squaredLength = m_endX * m_endX + m_endY * m_endY;
    }

    // Squared distance of a point from the piece.
    double SquaredDistance(const TckPt& point) const {
        const double x = East(point);
        const double y = North(point);
        const double along = x * m_endX + y * m_endY;
        if (along <= 0.0) return x * x + y * y;
        if (along >= m_squaredLength) return Square(x - m_endX) + Square(y - m_endY);
        return Square(x * m_endY - y * m_endX) / m_squaredLength;
    }

 private:
    static double Square(double value) { return value * value; }
    double North(const TckPt& point) const { return point.dLatitude - m_origin.dLatitude; }
    double East(const TckPt& point) const {
        double degrees = point.dLongitude - m_origin.dLongitude;
        if (degrees > 180.0) degrees -= 360.0;  // the shorter way, across the 180th meridian
        if (degrees < -180.0) degrees += 360.0;
        return degrees * m_shrink;
    }

    const TckPt& m_origin;
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

Farthest FindFarthest(const Points& points, const Piece& piece) {
    const LocalPlane plane(points[piece.first], points[piece.last]);
    Farthest farthest{piece.first, -1.0};
    for (std::size_t i = piece.first + 1; i < piece.last; ++i) {
        const double squared = plane.SquaredDistance(points[i]);
        if (squared <= farthest.squaredDistance) continue;
        farthest = {i, std::isnan(squared) ? std::numeric_limits<double>::infinity() : squared};
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

std::vector<char> PointsToKeep(const Points& points, double tolerance) {
    std::vector<char> keep(points.size(), 0);
    keep.front() = keep.back() = 1;
    const int deepest = DeepestByDistance(points.size());
    std::vector<Piece> open{{0, points.size() - 1, 0}};
    while (!open.empty()) {
        const Piece piece = open.back();
        open.pop_back();
        if (piece.last - piece.first < 2) continue;
        const Farthest farthest = FindFarthest(points, piece);
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
