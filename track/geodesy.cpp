#include "track/geodesy.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace {

using geodesy::kDegToRad;
using geodesy::kSquareDegree;

constexpr double kRadToDeg = 57.29577951308239;
constexpr double kEarthNauticalMiles = 3437.7467707849432;  // minutes of arc per radian
constexpr double kKilometresPerNauticalMile = 1.852;
constexpr double kMetresPerKilometre = 1000.0;
constexpr double kDegenerate = 1e-7;
constexpr double kTwoPi = 6.28318530717958;  // cut on purpose: due west is 269.99999999999994 degrees

constexpr bool HasBits(double value, std::uint64_t bits) { return std::bit_cast<std::uint64_t>(value) == bits; }

// Lengths and areas are stored with the tracks, so these must never move by a single bit.
static_assert(HasBits(kDegToRad, 0x3f91df46a2529d34));
static_assert(HasBits(kRadToDeg, 0x404ca5dc1a63c201));
static_assert(HasBits(kEarthNauticalMiles, 0x40aadb7e58bd85e1));
static_assert(HasBits(kKilometresPerNauticalMile, 0x3ffda1cac083126f));
static_assert(HasBits(kMetresPerKilometre, 0x408f400000000000));
static_assert(HasBits(kDegenerate, 0x3e7ad7f29abcaf48));
static_assert(HasBits(kTwoPi, 0x401921fb54442d11));
static_assert(HasBits(kSquareDegree, 0x420714fadb33badf));
static_assert(HasBits(geodesy::kHalfSquareDegree, 0x41f714fadb33badf));
static_assert(HasBits(geodesy::kMetresToDegrees, 0x3ee2d6cb2018765e));

struct Arc {
    double angle;    // [rad] at the earth's centre
    double azimuth;  // [rad] 0 <= azimuth < kTwoPi
};

Arc GreatCircle(double lat1, double lon1, double lat2, double lon2) {
    const double deltaLon = lon2 - lon1;
    const double cosine =
        std::cos(deltaLon) * std::cos(lat2) * std::cos(lat1) + std::sin(lat2) * std::sin(lat1);
    const double north = std::sin(lat2) * std::cos(lat1) - std::cos(deltaLon) * std::sin(lat1) * std::cos(lat2);
    const double east = std::sin(deltaLon) * std::cos(lat2);
    const double sine = std::fabs(std::sqrt(east * east + north * north));

    Arc arc{0.0, 0.0};
    if (sine > kDegenerate || std::fabs(cosine) > kDegenerate) arc.angle = std::atan2(sine, cosine);
    if (std::fabs(east) > kDegenerate || std::fabs(north) > kDegenerate) {
        arc.azimuth = std::atan2(east, north);
        while (arc.azimuth < 0) arc.azimuth += kTwoPi;
    }
    return arc;
}

}  // namespace

void CalDistance(double lat1, double lon1, double lat2, double lon2, double bearingOffset, double* pDistance,
                 double* pBearing) {
    const Arc arc = GreatCircle(lat1 * kDegToRad, lon1 * kDegToRad, lat2 * kDegToRad, lon2 * kDegToRad);
    *pDistance = ((arc.angle * kEarthNauticalMiles) * kKilometresPerNauticalMile) * kMetresPerKilometre;
    *pBearing = arc.azimuth * kRadToDeg + bearingOffset;
}

double AidCalLength(const std::vector<TckPt, je_allocator<TckPt>>& pts) {
    double total = 0.0;
    for (std::size_t i = 1; i < pts.size(); ++i) {
        const TckPt& earlier = pts[i - 1];
        const TckPt& later = pts[i];
        double distance = 0.0;
        double bearing = 0.0;
        CalDistance(later.dLatitude, later.dLongitude, earlier.dLatitude, earlier.dLongitude, 0, &distance,
                    &bearing);
        total += distance;
    }
    return total;
}

double AidCalArea(const std::vector<TckPt, je_allocator<TckPt>>& pts) {
    if (pts.size() < 3) return 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < pts.size(); ++i)
        sum += pts[i].dLongitude * pts[i + 1].dLatitude - pts[i].dLatitude * pts[i + 1].dLongitude;
    const TckPt& first = pts.front();
    const TckPt& last = pts.back();
    const double closing = last.dLongitude * first.dLatitude - first.dLongitude * last.dLatitude;
    return ((closing + sum) * 0.5 * kSquareDegree) * std::cos(first.dLatitude * kDegToRad);
}
