// From device paths to the files of this machine.
//
// A device path is UTF-16, at most 259 units, its names separated by backslashes or slashes, several of which
// count as one. With or without a separator in front it starts at the device's root: a device has no current
// folder. A name "." stays where it is and ".." drops the name before it, but never climbs above the root. Dots
// and blanks at the end of the last name are dropped.
//
// On disk names are UTF-8. Of entries that differ in letter case alone the one spelled as asked for counts,
// otherwise the first in byte order. Entries that no device path can name (not UTF-8, or with a backslash,
// wildcard, or dot or blank at the end) are passed over.
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

// Where a device path leads on this machine.
struct HostPath {
    std::string folder;  // an existing entry; empty: the machine's own root
    std::string name;    // as it is on disk, or is to be; empty: the path is the device's root
    bool exists;         // whether there is an entry of that name, be it a dangling link
    bool endsInSeparator;

    std::string Text() const { return folder + '/' + name; }
    bool IsRoot() const { return name.empty(); }
};

// Nothing for a null, empty or overlong path.
std::optional<DevicePath> ParseDevicePath(const wchar_t* path);

// Nothing when a parent is missing, a name holds a wildcard, or the last one is new and no name for a file.
std::optional<HostPath> FindOnHost(const DevicePath& path);
std::optional<HostPath> FindOnHost(const wchar_t* path);

// The same for a path that may stand for a file: the root and paths that end in a separator do not.
std::optional<HostPath> FindFileOnHost(const wchar_t* path);

// The names in a folder of this machine that a device path can have, in no order; nothing when it cannot be
// read.
struct Entry {
    std::wstring name;
    std::string nameOnDisk;
};
std::optional<std::vector<Entry>> EntriesOf(const std::string& folder);

bool HoldsWildcard(std::wstring_view name);

}  // namespace platform
