#include "host/recording/status.h"

#include <algorithm>
#include <cmath>

#include "host/text/text.h"

namespace host {
namespace {

constexpr double kKilometresPerHour = 3.6;
constexpr std::size_t kBarWidth = 20;

std::string Bar(double share) {
    const auto done = static_cast<std::size_t>(share * kBarWidth);
    return '[' + std::string(done, '#') + std::string(kBarWidth - done, '.') + ']';
}

// "0:07", "12:30", "1:02:03".
std::string Clock(double time) {
    const auto seconds = static_cast<std::uint64_t>(time);
    const auto two = [](std::uint64_t value) { return (value < 10 ? "0" : "") + std::to_string(value); };
    const std::uint64_t hours = seconds / 3600, minutes = seconds / 60 % 60;
    const std::string start = hours == 0 ? std::to_string(minutes) : std::to_string(hours) + ':' + two(minutes);
    return start + ':' + two(seconds % 60);
}

std::string TimeOfDay(long time) {
    const std::string text = UtcText(time);
    return time == 0 ? "--:--:-- UTC" : text.substr(text.find(' ') + 1);
}

std::string BehindText(const Status& status) {
    constexpr std::int64_t kWorthTelling = 10;  // [s]
    return status.behind < kWorthTelling ? "" : ", " + std::to_string(status.behind) + " s behind";
}

}  // namespace

std::string LiveText(const Status& status) {
    return TimeOfDay(status.time) + (status.hasFix ? "  fix  " : "  no fix  ") +
           Decimals(status.hasFix ? status.speed * kKilometresPerHour : 0.0, 0) + " km/h  " +
           DistanceText(status.distance) + "  " + Counted(status.points, "point", "points") +
           BehindText(status) + "  " + Counted(static_cast<std::uint64_t>(status.slices), "slice", "slices") +
           "  ring " + Decimals(100 * status.fill, 1) + " %";
}

std::string FileText(const Status& status, double elapsed) {
    const double share = std::clamp(status.share.value_or(0.0), 0.0, 1.0);
    const double rate = elapsed > 0 ? static_cast<double>(status.fixes) / elapsed : 0.0;
    const std::string left = share > 0 ? "  " + Clock(elapsed / share - elapsed) + " left" : "";
    return Bar(share) + "  " + Decimals(std::floor(100 * share), 0) + " %  " +
           Decimals(rate, rate < 10 ? 1 : 0) + " fixes/s" + left + "  " +
           Counted(status.points, "point", "points");
}

std::string CutToWidth(const std::string& text, std::size_t columns) { return text.substr(0, columns); }

}  // namespace host
