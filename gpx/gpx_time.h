// Times as they stand in a GPX document: 2001-09-09T01:46:40Z. Seconds since 1970, no time-zone shift.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace gpx {

inline constexpr std::size_t kTimeRoom = 20;  // what WriteTime needs at most

// Returns the end of what was written; no terminator.
char* WriteTime(std::int32_t seconds, char* to);

// What follows the seconds (a fraction, a time zone, Z) is ignored; an empty text means now, in UTC. A text
// that is no date and time gives an unspecified number.
std::int32_t ReadTime(std::string_view text);

}  // namespace gpx
