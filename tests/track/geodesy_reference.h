// The geodesy once more, written plainly from its description, with every constant given by its bits. Results
// of the library must equal these bit for bit: stored tracks carry them. Sines and arc tangents are held to
// their own bits in tests/util/trigonometry_test.cpp.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "tests/support/points.h"
#include "util/trigonometry.h"

namespace reference {

using trigonometry::ArcTangent;
using trigonometry::Cosine;
using trigonometry::Sine;

inline double FromBits(std::uint64_t bits) { return std::bit_cast<double>(bits); }

inline const double kDegToRad = FromBits(0x3f91df46a2529d34);
inline const double kRadToDeg = FromBits(0x404ca5dc1a63c201);
inline const double kEarthNauticalMiles = FromBits(0x40aadb7e58bd85e1);
inline const double kKilometresPerMile = FromBits(0x3ffda1cac083126f);
inline const double kMetresPerKilometre = FromBits(0x408f400000000000);
inline const double kEpsilon = FromBits(0x3e7ad7f29abcaf48);
inline const double kTwoPi = FromBits(0x401921fb54442d11);
inline const double kAreaFactor = FromBits(0x420714fadb33badf);
inline const double kHalfAreaFactor = FromBits(0x41f714fadb33badf);
inline const double kPerAreaFactor = 8.069703496832232e-11;

struct Leg {
    double distance;
    double bearing;
};

inline Leg Between(double lat1, double lon1, double lat2, double lon2) {
    const double phi1 = lat1 * kDegToRad, lambda1 = lon1 * kDegToRad;
    const double phi2 = lat2 * kDegToRad, lambda2 = lon2 * kDegToRad;
    const double delta = lambda2 - lambda1;
    const double c = Cosine(delta) * Cosine(phi2) * Cosine(phi1) + Sine(phi2) * Sine(phi1);
    const double y2 = Sine(phi2) * Cosine(phi1) - Cosine(delta) * Sine(phi1) * Cosine(phi2);
    const double y1 = Sine(delta) * Cosine(phi2);
    const double s = std::fabs(std::sqrt(std::fabs(y1 * y1 + y2 * y2)));
    const double sigma = s > kEpsilon || std::fabs(c) > kEpsilon ? ArcTangent(s, c) : 0.0;
    double alpha = 0.0;
    if (std::fabs(y1) > kEpsilon || std::fabs(y2) > kEpsilon) alpha = ArcTangent(y1, y2);
    while (alpha < 0) alpha += kTwoPi;
    return {((sigma * kEarthNauticalMiles) * kKilometresPerMile) * kMetresPerKilometre, alpha * kRadToDeg};
}

inline double Distance(const TckPt& a, const TckPt& b) {
    return Between(a.dLatitude, a.dLongitude, b.dLatitude, b.dLongitude).distance;
}

inline double Cross(const TckPt& a, const TckPt& b) {
    return a.dLongitude * b.dLatitude - a.dLatitude * b.dLongitude;
}

inline double CosLat(const TckPt& fix) { return Cosine(fix.dLatitude * kDegToRad); }

inline double Length(const Points& pts) {
    double total = 0.0;
    for (std::size_t i = 0; i + 1 < pts.size(); ++i) total += Distance(pts[i + 1], pts[i]);
    return total;
}

inline double SignedArea(const Points& pts) {
    if (pts.size() < 3) return 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < pts.size(); ++i) sum += Cross(pts[i], pts[i + 1]);
    const double closing = pts.back().dLongitude * pts[0].dLatitude - pts[0].dLongitude * pts.back().dLatitude;
    return ((closing + sum) * 0.5 * kAreaFactor) * CosLat(pts[0]);
}

}  // namespace reference
