#include "host/text/duration.h"

#include <charconv>

namespace host {
namespace {

// [s] of a unit; 0 for what is none.
std::int64_t UnitSeconds(char unit) {
    switch (unit) {
        case 'd':
            return 86'400;
        case 'h':
            return 3600;
        case 'm':
            return 60;
        default:
            return unit == 's' ? 1 : 0;
    }
}

}  // namespace

std::optional<std::int64_t> ReadDuration(std::string_view text) {
    std::int64_t total = 0, largest = 100'000;  // units come from large to small
    if (text.empty()) return std::nullopt;
    while (!text.empty()) {
        std::uint32_t count = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
        if (error != std::errc()) return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        const std::int64_t unit = text.empty() ? 1 : UnitSeconds(text.front());
        if (unit == 0 || unit >= largest) return std::nullopt;
        if (!text.empty()) text.remove_prefix(1);
        total += unit * count;
        largest = unit;
    }
    return total;
}

}  // namespace host
