// How far a thinned line lies from the points that it dropped, measured apart from the code that thins.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <vector>

#include "tests/support/points.h"

// Gives every point its number, by which it is known again after thinning.
inline Points Numbered(Points pts) {
    for (std::size_t i = 0; i < pts.size(); ++i) pts[i].lTime = static_cast<std::int32_t>(i);
    return pts;
}

// The numbers of the points kept; throws when one is altered, out of order or twice there.
inline std::vector<std::size_t> KeptNumbers(const Points& all, const Points& kept) {
    std::vector<std::size_t> numbers;
    for (const TckPt& fix : kept) {
        const auto number = static_cast<std::size_t>(fix.lTime);
        if (number >= all.size() || !(all[number] == fix)) throw std::logic_error("a point was altered");
        if (!numbers.empty() && number <= numbers.back()) throw std::logic_error("points changed their order");
        numbers.push_back(number);
    }
    return numbers;
}

// Degrees of longitude from a to b, the shorter way round.
inline long double DegreesEast(const TckPt& a, const TckPt& b) {
    return std::remainder(static_cast<long double>(b.dLongitude) - static_cast<long double>(a.dLongitude),
                          360.0L);
}

// Distance of a point from the straight piece between two others, in degrees of arc, in the plane around the
// point itself.
inline double DegreesFromPiece(const TckPt& fix, const TckPt& from, const TckPt& to) {
    const long double shrink =
        std::cos(static_cast<long double>(fix.dLatitude) * std::numbers::pi_v<long double> / 180);
    const long double ax = DegreesEast(fix, from) * shrink, ay = from.dLatitude - fix.dLatitude;
    const long double bx = DegreesEast(fix, to) * shrink, by = to.dLatitude - fix.dLatitude;
    const long double dx = bx - ax, dy = by - ay;
    const long double squared = dx * dx + dy * dy;
    const long double share = squared > 0 ? std::clamp(-(ax * dx + ay * dy) / squared, 0.0L, 1.0L) : 0.0L;
    return static_cast<double>(std::hypot(ax + share * dx, ay + share * dy));
}

// The largest distance of a dropped point from the piece of the kept line that passes it.
inline double LargestError(const Points& all, const Points& kept) {
    const std::vector<std::size_t> numbers = KeptNumbers(all, kept);
    double largest = 0.0;
    for (std::size_t k = 0; k + 1 < numbers.size(); ++k)
        for (std::size_t i = numbers[k] + 1; i < numbers[k + 1]; ++i)
            largest = std::max(largest, DegreesFromPiece(all[i], all[numbers[k]], all[numbers[k + 1]]));
    return largest;
}
