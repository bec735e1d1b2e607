// From device paths (platform/device_path.h) to the files of this machine.
//
// On disk names are UTF-8. Of entries that differ in letter case alone the one spelled as asked for counts,
// otherwise the first in byte order. Entries that no device path can name (not UTF-8, or with a backslash,
// wildcard, or dot or blank at the end) are passed over. Links count as what they lead to, also outside of the
// device's root.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/device_path.h"

namespace platform {

// Where a device path leads on this machine.
struct HostPath {
    std::string folder;  // an existing entry; empty: the machine's own root
    std::string name;    // as it is on disk, or is to be; empty: the path is the device's root
    bool exists;         // whether there is an entry of that name, be it a dangling link
    bool endsInSeparator;

    std::string Text() const { return folder + '/' + name; }
    bool IsRoot() const { return name.empty(); }
};

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

}  // namespace platform
