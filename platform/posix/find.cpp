// A search reads the names of its folder when it starts, and looks at an entry when it is due.
#include "platform/find.h"

#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/posix/handle.h"
#include "platform/posix/host_path.h"
#include "platform/posix/letter_case.h"
#include "platform/posix/utf.h"

namespace platform {

namespace {

constexpr std::int64_t kTicksPerSecond = 10000000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;

struct Search {
    std::string folder;
    std::vector<Entry> entries;
    std::size_t next = 0;
};

// Never destroyed: a background thread may still search while the process ends.
struct Searches {
    std::mutex guard;
    std::map<Handle, Search> running;
    Handle nextHandle = kFirstSearch;
};

Searches& TheSearches() {
    static Searches& searches = *new Searches;
    return searches;
}

FileTime FileTimeOf(const timespec& time) {
    const std::int64_t seconds = time.tv_sec + kSecondsFrom1601To1970;
    return seconds < 0 ? 0 : static_cast<FileTime>(seconds * kTicksPerSecond + time.tv_nsec / 100);
}

// False for what is neither file nor folder, or has gone since.
bool Describe(const std::string& folder, const Entry& entry, FindData* found) {
    struct stat status;
    if (::stat((folder + '/' + entry.nameOnDisk).c_str(), &status) != 0) return false;
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) return false;
    if (entry.name.size() >= std::size(found->name)) return false;
    found->attributes = S_ISDIR(status.st_mode) ? kDirectoryAttribute : 0;
    found->lastWriteTime = FileTimeOf(status.st_mtim);
    *std::copy(entry.name.begin(), entry.name.end(), found->name) = L'\0';
    return true;
}

bool Advance(Search& search, FindData* entry) {
    while (search.next < search.entries.size())
        if (Describe(search.folder, search.entries[search.next++], entry)) return true;
    return false;
}

// What the folder holds. The folder itself and its parent are entries of these two patterns alone, and not of
// the root.
std::optional<std::vector<Entry>> SearchableEntries(const HostPath& folder, const std::wstring& pattern) {
    auto entries = EntriesOf(folder.IsRoot() ? folder.folder + '/' : folder.Text());
    if (entries && !folder.IsRoot() && (pattern == L"*" || pattern == L"*.*"))
        entries->insert(entries->end(), {{L".", "."}, {L"..", ".."}});
    return entries;
}

// The folder's matching entries in name order.
std::optional<Search> SearchFolder(DevicePath path) {
    const std::wstring pattern = path.names.back();
    path.names.pop_back();
    const auto folder = FindOnHost(path);
    auto entries = folder ? SearchableEntries(*folder, pattern) : std::nullopt;
    if (!entries) return std::nullopt;
    std::erase_if(*entries, [&](const Entry& entry) { return !MatchesPattern(entry.name, pattern, Capital); });
    std::sort(entries->begin(), entries->end(),
              [](const Entry& a, const Entry& b) { return LessIgnoringCase(a.name, b.name); });
    return Search{folder->IsRoot() ? folder->folder : folder->Text(), std::move(*entries)};
}

std::optional<Search> SearchEntry(const DevicePath& path) {
    const auto entry = FindOnHost(path);
    if (!entry || !entry->exists) return std::nullopt;
    return Search{entry->folder, {{ToUtf16(entry->name), entry->name}}};
}

std::optional<Search> MakeSearch(const wchar_t* pattern) {
    const auto path = ParseDevicePath(pattern);
    if (!path || IsNetworkPath(pattern) || path->names.empty() || path->endsInSeparator) return std::nullopt;
    return HoldsWildcard(path->names.back()) ? SearchFolder(*path) : SearchEntry(*path);
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData* entry) {
    auto search = MakeSearch(pattern);
    if (!search || !Advance(*search, entry)) return kInvalidHandle;
    Searches& searches = TheSearches();
    const std::lock_guard lock(searches.guard);
    const Handle handle = searches.nextHandle;
    searches.nextHandle += kHandleStep;
    searches.running.emplace(handle, std::move(*search));
    return handle;
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
