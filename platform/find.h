// Searching folders by pattern, on device paths (platform/file.h).
#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace platform {

using Handle = std::intptr_t;
inline constexpr Handle kInvalidHandle = -1;  // INVALID_HANDLE_VALUE

inline constexpr std::uint32_t kDirectoryAttribute = 0x10;  // FILE_ATTRIBUTE_DIRECTORY

struct FindData {
    std::uint32_t attributes;
    FileTime lastWriteTime;  // UTC
    wchar_t name[260];       // without folder, zero-terminated
};

// Starts a search; the last component may hold * and ?, and is matched ignoring letter case. Fills the first
// entry and returns a handle for FindNextFileW and FindClose. Entries come in name order. A path without
// wildcards finds the file or folder itself; * and *.* also find "." and "..", but not in the root. Links count
// as what they lead to; devices and links that lead nowhere are no entries. kInvalidHandle, with the record
// untouched, when nothing matches, also for the root, a path with a trailing backslash, two separators in front
// (a network name), and wildcards in an earlier component.
Handle FindFirstFileW(const wchar_t* pattern, FindData* entry);

// The next entry; false, with the record untouched, after the last.
bool FindNextFileW(Handle search, FindData* entry);

// Ends a search. False, and harmless, for a handle that is none.
bool FindClose(Handle search);

}  // namespace platform
