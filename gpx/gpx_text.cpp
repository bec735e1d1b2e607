#include "gpx/gpx_text.h"

#include <algorithm>

#include "util/paths.h"
#include "util/text.h"
#include "util/wide_path.h"

// A UTF-16 unit takes at most four bytes of UTF-8 and at least one of any code page. So this much of a text
// that is longer decides what fits, and a text of any length costs no more.
void gpx::ToAnsi(std::string_view utf8, char* field, int size) {
    const auto room = static_cast<std::size_t>(size) + 1;
    std::fill_n(field, room, '\0');
    UTF_8ToAnsic(std::string(utf8.substr(0, 4 * room)).c_str(), field, size);
}

std::wstring gpx::PathInAnsi(const std::wstring& path) {
    char narrow[paths::kMaxPath + 1] = {};
    WcharToChar(narrow, path.c_str(), paths::kMaxPath);
    return WidePath(narrow);
}
