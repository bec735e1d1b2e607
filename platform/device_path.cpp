#include "platform/device_path.h"

#include <algorithm>
#include <cwchar>

namespace platform {

namespace {

bool IsSeparator(wchar_t unit) { return unit == L'\\' || unit == L'/'; }

void Add(std::wstring_view name, DevicePath& path) {
    if (name.empty() || name == L".") return;
    if (name != L"..")
        path.names.emplace_back(name);
    else if (!path.names.empty())
        path.names.pop_back();
}

// A last name of nothing but dots and blanks is none: the path ends before it.
void TrimLastName(DevicePath& path) {
    if (path.names.empty()) return;
    path.names.back() = WithoutDotsAndBlanksAtEnd(path.names.back());
    if (!path.names.back().empty()) return;
    path.names.pop_back();
    path.endsInSeparator = true;
}

}  // namespace

std::optional<DevicePath> ParseDevicePath(const wchar_t* path) {
    if (path == nullptr) return std::nullopt;
    const std::wstring_view text(path, wcsnlen(path, kPathLimit));
    if (text.empty() || text.size() >= kPathLimit) return std::nullopt;
    DevicePath parsed{{}, IsSeparator(text.back())};
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find_first_of(L"\\/", start), text.size());
        Add(text.substr(start, end - start), parsed);
        start = end + 1;
    }
    TrimLastName(parsed);
    return parsed;
}

std::wstring WithoutDotsAndBlanksAtEnd(std::wstring_view name) {
    return std::wstring(name.substr(0, name.find_last_not_of(L". ") + 1));
}

bool HoldsWildcard(std::wstring_view name) { return name.find_first_of(L"*?") != std::wstring_view::npos; }

bool IsNetworkPath(std::wstring_view path) {
    return path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
}

// Only the latest * ever has to be tried again, with one more unit each time.
bool MatchesPattern(std::wstring_view name, std::wstring_view pattern, wchar_t (*capital)(wchar_t)) {
    if (pattern == L"*.*") return true;
    std::size_t at = 0, in = 0, afterStar = std::wstring_view::npos, retry = 0;
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == L'*') {
            afterStar = ++in;
            retry = at;
        } else if (in < pattern.size() && (pattern[in] == L'?' || capital(pattern[in]) == capital(name[at]))) {
            ++in;
            ++at;
        } else if (afterStar != std::wstring_view::npos) {
            in = afterStar;
            at = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', in) == std::wstring_view::npos;
}

}  // namespace platform
