// The numbers and times of a document, for the peers' readers: the fastest that the standard library offers,
// where their users would take the parser's own slower conversions.
#pragma once

#include <charconv>
#include <chrono>
#include <cstdint>
#include <string_view>

inline double PeerReal(std::string_view text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

inline int PeerInteger(std::string_view text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// "2001-09-09T01:46:40Z" as seconds since 1970.
inline std::int32_t PeerTime(std::string_view text) {
    using namespace std::chrono;
    if (text.size() < 19) return 0;
    const auto field = [&](std::size_t at, std::size_t size) { return PeerInteger(text.substr(at, size)); };
    const year_month_day date{year(field(0, 4)), month(static_cast<unsigned>(field(5, 2))),
                              day(static_cast<unsigned>(field(8, 2)))};
    const auto time = sys_days(date) + hours(field(11, 2)) + minutes(field(14, 2)) + seconds(field(17, 2));
    return static_cast<std::int32_t>(time.time_since_epoch().count());
}
