// Times as documents state them: ISO 8601, always in UTC when written. As the user reads them on the terminal:
// host/text/text.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// "2024-05-12T08:15:06Z" from seconds since 1970.
std::string IsoText(std::int64_t seconds);

// Seconds since 1970 of "2024-05-12T08:15:06" with or without a fraction (cut, towards the past), and with "Z",
// an offset like "+02:00", "+0200" or "+02", or nothing, which counts as UTC. Blanks around it do not matter.
// Nothing for any other text and for what is no date; a 60th second is the first of the next minute.
std::optional<std::int64_t> ReadIsoTime(std::string_view text);

}  // namespace host
