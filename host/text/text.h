// Numbers and times as the user reads them: the same under every locale.
#pragma once

#include <cstdint>
#include <string>

namespace host {

// `value` with that many digits behind the point, rounded: Decimals(38.414, 1) is "38.4". A 0 has no sign.
std::string Decimals(double value, int digits);

// "2024-05-12 08:15:07 UTC"; seconds since 1970, 0 is "unknown".
std::string UtcText(long seconds);

// "1 fix", "2 fixes".
std::string Counted(std::uint64_t count, const char* one, const char* several);

// "840 m", "38.41 km".
std::string DistanceText(double metres);

// Texts of the library are in the code page of the settings; the user's are UTF-8.
std::string ToUtf8(const std::string& libraryText);
std::string FromUtf8(const std::string& text);

}  // namespace host
