// The system's searches, in name order and by long names only: its own order is the file system's, and its own
// patterns also cover the short names that some file systems keep.
#include "platform/find.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/device_path.h"
#include "platform/windows/host_path.h"

namespace platform {

namespace {

struct Search {
    std::vector<FindData> entries;
    std::size_t next = 0;
};

// Never destroyed: a background thread may still search while the process ends.
struct Searches {
    std::mutex guard;
    std::map<Handle, Search> running;
    Handle nextHandle = 1;
};

Searches& TheSearches() {
    static Searches& searches = *new Searches;
    return searches;
}

wchar_t Capital(wchar_t unit) {
    ::CharUpperBuffW(&unit, 1);
    return unit;
}

bool IsBefore(const FindData& a, const FindData& b) {
    const int order = ::CompareStringOrdinal(a.name, -1, b.name, -1, TRUE);
    return order == CSTR_EQUAL ? std::wcscmp(a.name, b.name) < 0 : order == CSTR_LESS_THAN;
}

FindData Entry(const WIN32_FIND_DATAW& found) {
    FindData entry{};
    entry.attributes = found.dwFileAttributes;
    entry.lastWriteTime =
        static_cast<FileTime>(found.ftLastWriteTime.dwHighDateTime) << 32 | found.ftLastWriteTime.dwLowDateTime;
    std::copy(std::begin(found.cFileName), std::end(found.cFileName), entry.name);
    return entry;
}

std::vector<FindData> ReadEntries(const std::wstring& path, const std::wstring& lastName) {
    std::vector<FindData> entries;
    WIN32_FIND_DATAW found;
    const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return entries;
    do {
        if (!HoldsWildcard(lastName) || MatchesPattern(found.cFileName, lastName, Capital))
            entries.push_back(Entry(found));
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
    std::sort(entries.begin(), entries.end(), IsBefore);
    return entries;
}

bool Advance(Search& search, FindData* entry) {
    if (search.next == search.entries.size()) return false;
    *entry = search.entries[search.next++];
    return true;
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData* entry) {
    const auto parsed = ParseDevicePath(pattern);
    const auto path = FindOnHost(pattern);
    if (!parsed || IsNetworkPath(pattern) || parsed->names.empty() || parsed->endsInSeparator)
        return kInvalidHandle;
    Search search{ReadEntries(*path, parsed->names.back())};
    if (!Advance(search, entry)) return kInvalidHandle;
    Searches& searches = TheSearches();
    const std::lock_guard lock(searches.guard);
    searches.running.emplace(searches.nextHandle, std::move(search));
    return searches.nextHandle++;
}

bool FindNextFileW(Handle search, FindData* entry) {
    Searches& searches = TheSearches();
    const std::lock_guard lock(searches.guard);
    const auto running = searches.running.find(search);
    return running != searches.running.end() && Advance(running->second, entry);
}

bool FindClose(Handle search) {
    Searches& searches = TheSearches();
    const std::lock_guard lock(searches.guard);
    return searches.running.erase(search) != 0;
}

}  // namespace platform
