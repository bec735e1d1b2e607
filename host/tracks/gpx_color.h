// The colours that programs write into the extensions of a GPX track.
#pragma once

#include <optional>
#include <string_view>

namespace host {

// 0x00BBGGRR of an element "color" or "DisplayColor"; nothing for what is none of these:
//   a name of Garmin's palette ("DarkBlue");
//   rrggbb, #rrggbb or #aarrggbb in hexadecimal;
//   0x00BBGGRR as a decimal number, which is this library's own: the element then has no prefix, and
//   `isDirect` says that it stands in the extensions themselves.
std::optional<unsigned long> ReadGpxColor(std::string_view elementName, bool isDirect, std::string_view text);

}  // namespace host
