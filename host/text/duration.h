// Lengths of time as the user states them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

// Seconds of "90", "90s", "15m", "1h", "1h30m", "2d"; nothing for any other text.
std::optional<std::int64_t> ReadDuration(std::string_view text);

}  // namespace host
