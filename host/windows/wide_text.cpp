#include "host/windows/wide_text.h"

#include <windows.h>

#include <algorithm>

namespace host {

// No byte of UTF-8 becomes more than one unit, and no unit more than three bytes.
std::wstring WideText(std::string_view utf8) {
    std::wstring wide(utf8.size(), L'\0');
    const int size = static_cast<int>(utf8.size());
    const int units = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(std::max(units, 0)));
    return wide;
}

std::string NarrowText(std::wstring_view wide) {
    std::string utf8(3 * wide.size(), '\0');
    const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), utf8.data(),
                                            static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(std::max(bytes, 0)));
    return utf8;
}

}  // namespace host
