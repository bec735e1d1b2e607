#include "host/tracks/split_track.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>

namespace host {
namespace {

constexpr long kLongestInterval = 366L * 24 * 3600;  // [s]

bool IsCut(const TckPt& a, const TckPt& b, const CutAt& where) {
    if (where.gap && a.lTime != 0 && b.lTime != 0 && std::labs(long{b.lTime} - a.lTime) >= *where.gap)
        return true;
    if (!where.distance) return false;
    double distance = 0, bearing = 0;
    CalDistance(a.dLatitude, a.dLongitude, b.dLatitude, b.dLongitude, 0, &distance, &bearing);
    return distance >= *where.distance;
}

}  // namespace

std::vector<Points> SplitPoints(const Points& points, const CutAt& where) {
    std::vector<Points> pieces;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i == 0 || IsCut(points[i - 1], points[i], where)) pieces.emplace_back();
        pieces.back().push_back(points[i]);
    }
    return pieces;
}

std::optional<long> ReadInterval(const std::string& text) {
    static const std::map<std::string, long> units = {{"", 1}, {"s", 1}, {"m", 60}, {"h", 3600}};
    long number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    const auto unit = units.find(std::string(read.ptr, end));
    if (read.ec != std::errc() || unit == units.end()) return std::nullopt;
    if (number < 1 || number > kLongestInterval / unit->second) return std::nullopt;
    return number * unit->second;
}

}  // namespace host
