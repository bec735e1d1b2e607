// Device paths and search patterns as texts, the same on every system. Where a path leads on the machine is the
// twins' business: platform/posix/host_path.h, platform/windows/host_path.h.
//
// A device path is UTF-16, at most 259 units, its names separated by backslashes or slashes, several of which
// count as one. With or without a separator in front it starts at the device's root: a device has no current
// folder. A name "." stays where it is and ".." drops the name before it, but never climbs above the root. Dots
// and blanks at the end of the last name are dropped.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

inline constexpr std::size_t kPathLimit = 260;  // a path's units, terminator included

struct DevicePath {
    std::vector<std::wstring> names;
    bool endsInSeparator;
};

// Nothing for a null, empty or overlong path.
std::optional<DevicePath> ParseDevicePath(const wchar_t* path);

std::wstring WithoutDotsAndBlanksAtEnd(std::wstring_view name);

bool HoldsWildcard(std::wstring_view name);

// Two separators in front name a computer of the network. For searches there is none; everything else counts
// the two as one, so that what is made of the folder "\" and a name can be written and found again.
bool IsNetworkPath(std::wstring_view path);

// Whether a pattern covers the whole name, ignoring letter case as `capital` sees it. * stands for any text, ?
// for one unit; *.* covers every name, also one without a dot. Time is at most the product of the lengths.
bool MatchesPattern(std::wstring_view name, std::wstring_view pattern, wchar_t (*capital)(wchar_t));

}  // namespace platform
