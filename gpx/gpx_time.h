// Times as they stand in a GPX document: 2001-09-09T01:46:40Z. Seconds since 1970, no time-zone shift.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace gpx {

inline constexpr std::size_t kTimeRoom = 20;  // what WriteTime needs at most

// Returns the end of what was written; no terminator.
char* WriteTime(std::int32_t seconds, char* to);

// Writes as WriteTime does, and remembers the day: nearly every time is of the same day as the one before it.
class TimeWriter {
 public:
    char* Write(std::int32_t seconds, char* to);

 private:
    void RememberDay(std::int64_t day, std::int32_t seconds);

    std::int64_t m_day = std::numeric_limits<std::int64_t>::min();  // since 1970-01-01; none yet
    char m_date[kTimeRoom] = {};                                    // "2001-09-09T"
    std::size_t m_dateSize = 0;
};

// What follows the seconds (a fraction, a time zone, Z) is ignored; an empty text means now, in UTC. A text
// that is no date and time gives an unspecified number.
std::int32_t ReadTime(std::string_view text);

// Reads as ReadTime does, and remembers the day: nearly every time is of the same day as the one before it.
class TimeReader {
 public:
    std::int32_t Read(std::string_view text);

 private:
    void RememberDay(std::string_view text, std::int32_t seconds);

    static constexpr std::size_t kDaySize = 11;  // "2001-09-09T"
    std::array<char, kDaySize> m_day{};
    std::uint32_t m_midnight = 0;  // when m_day began
};

}  // namespace gpx
