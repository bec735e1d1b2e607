// A search reads the names of its folder when it starts, and looks at an entry when it is due.
#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/letter_case.h"
#include "platform/posix/host_path.h"
#include "platform/search.h"
#include "platform/utf.h"

namespace platform {

namespace {

constexpr std::int64_t kTicksPerSecond = 10000000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;

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

class EntrySearch : public Search {
 public:
    EntrySearch(std::string folder, std::vector<Entry> entries)
        : m_folder(std::move(folder)), m_entries(std::move(entries)) {}

    bool Advance(FindData* entry) override {
        while (m_next < m_entries.size())
            if (Describe(m_folder, m_entries[m_next++], entry)) return true;
        return false;
    }

 private:
    std::string m_folder;
    std::vector<Entry> m_entries;
    std::size_t m_next = 0;
};

// What the folder holds. The folder itself and its parent are entries of these two patterns alone, and not of
// the root.
std::optional<std::vector<Entry>> SearchableEntries(const HostPath& folder, const std::wstring& pattern) {
    auto entries = EntriesOf(folder.IsRoot() ? folder.folder + '/' : folder.Text());
    if (entries && !folder.IsRoot() && (pattern == L"*" || pattern == L"*.*"))
        entries->insert(entries->end(), {{L".", "."}, {L"..", ".."}});
    return entries;
}

// The folder's matching entries in name order.
std::unique_ptr<Search> SearchFolder(DevicePath path) {
    const std::wstring pattern = path.names.back();
    path.names.pop_back();
    const auto folder = FindOnHost(path);
    auto entries = folder ? SearchableEntries(*folder, pattern) : std::nullopt;
    if (!entries) return nullptr;
    std::erase_if(*entries, [&](const Entry& entry) { return !MatchesPattern(entry.name, pattern, Capital); });
    std::sort(entries->begin(), entries->end(),
              [](const Entry& a, const Entry& b) { return LessIgnoringCase(a.name, b.name); });
    return std::make_unique<EntrySearch>(folder->IsRoot() ? folder->folder : folder->Text(),
                                         std::move(*entries));
}

std::unique_ptr<Search> SearchEntry(const DevicePath& path) {
    const auto entry = FindOnHost(path);
    if (!entry || !entry->exists) return nullptr;
    return std::make_unique<EntrySearch>(entry->folder,
                                         std::vector<Entry>{{ToUtf16(entry->name), entry->name}});
}

}  // namespace

std::unique_ptr<Search> MakeSearch(const wchar_t* pattern) {
    const auto path = ParseDevicePath(pattern);
    if (!path || IsNetworkPath(pattern) || path->names.empty() || path->endsInSeparator) return nullptr;
    return HoldsWildcard(path->names.back()) ? SearchFolder(*path) : SearchEntry(*path);
}

}  // namespace platform
