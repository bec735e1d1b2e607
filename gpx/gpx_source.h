// The text of a GPX file, made ready for the parser: line ends, encoding.
#pragma once

#include <cstdint>
#include <string>

#include "gpx/text_window.h"

namespace gpx {

inline constexpr std::int32_t kAnsi = 0;
inline constexpr std::int32_t kUtf8 = 1;
inline constexpr std::int32_t kUtf16 = 2;

// Opens the file and reads its beginning, or all of it where its bytes are to be changed. When its lines end
// with a line feed alone, the file is first given CR LF line ends. Sets `encoding` to one of the above; a
// UTF-16 text comes back in code page 936, through a temporary file that is gone when this returns. The text
// ends at its first zero. Throws std::runtime_error for a file that cannot be read, std::bad_alloc.
TextWindow LoadSource(const std::wstring& path, std::int32_t& encoding);

}  // namespace gpx
