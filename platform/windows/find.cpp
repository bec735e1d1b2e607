// Searches in name order and by long names only: the system's own order is the file system's, and its patterns
// also cover the short names that some file systems keep, and take a question mark for no dot. So it is asked
// for all that a folder holds.
#include <windows.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "platform/letter_case.h"
#include "platform/search.h"
#include "platform/windows/host_path.h"

namespace platform {

namespace {

FileTime FileTimeOf(const FILETIME& time) {
    return static_cast<FileTime>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// In literal paths the two names of every folder are names like others. A drive is one with a backslash only.
std::wstring PathOf(const std::wstring& folder, const std::wstring& name) {
    if (name == L".") return folder;
    return name == L".." ? folder.substr(0, folder.rfind(L'\\') + 1) : folder + L'\\' + name;
}

// False for what is neither file nor folder, or has gone since.
bool Describe(const std::wstring& folder, const std::wstring& name, FindData* found) {
    const auto status = LookAt(PathOf(folder, name));
    if (!status || name.size() >= std::size(found->name)) return false;
    found->attributes = status->isFolder ? kDirectoryAttribute : 0;
    found->lastWriteTime = FileTimeOf(status->lastWriteTime);
    *std::copy(name.begin(), name.end(), found->name) = L'\0';
    return true;
}

class NameSearch : public Search {
 public:
    NameSearch(std::wstring folder, std::vector<std::wstring> names)
        : m_folder(std::move(folder)), m_names(std::move(names)) {}

    bool Advance(FindData* entry) override {
        while (m_next < m_names.size())
            if (Describe(m_folder, m_names[m_next++], entry)) return true;
        return false;
    }

 private:
    std::wstring m_folder;
    std::vector<std::wstring> m_names;
    std::size_t m_next = 0;
};

// As the system answers.
std::vector<std::wstring> NamesOf(const std::wstring& hostPattern) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    const HANDLE search = ::FindFirstFileW(hostPattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do names.emplace_back(found.cFileName);
    while (::FindNextFileW(search, &found));
    ::FindClose(search);
    return names;
}

// The folder itself and its parent are entries of these two patterns alone, and not of the root.
bool IsFound(const std::wstring& name, const std::wstring& pattern, const HostPath& folder) {
    const bool isOfAll = pattern == L"*" || pattern == L"*.*";
    if (name == L"." || name == L"..") return isOfAll && !folder.IsRoot();
    return MatchesPattern(name, pattern, Capital);
}

// The folder's matching entries in name order.
std::unique_ptr<Search> SearchFolder(DevicePath path) {
    const std::wstring pattern = path.names.back();
    path.names.pop_back();
    const auto folder = FindOnHost(path);
    if (!folder) return nullptr;
    const std::wstring hostFolder = folder->IsRoot() ? folder->folder : folder->Text();
    auto names = NamesOf(hostFolder + L"\\*");
    std::erase_if(names, [&](const std::wstring& name) { return !IsFound(name, pattern, *folder); });
    std::sort(names.begin(), names.end(), LessIgnoringCase);
    return std::make_unique<NameSearch>(hostFolder, std::move(names));
}

std::unique_ptr<Search> SearchEntry(const DevicePath& path) {
    const auto entry = FindOnHost(path);
    if (!entry) return nullptr;
    auto names = NamesOf(entry->Text());
    std::erase_if(names, [&](const std::wstring& name) { return !EqualIgnoringCase(name, entry->name); });
    return std::make_unique<NameSearch>(entry->folder, std::move(names));
}

}  // namespace

std::unique_ptr<Search> MakeSearch(const wchar_t* pattern) {
    const auto path = ParseDevicePath(pattern);
    if (!path || IsNetworkPath(pattern) || path->names.empty() || path->endsInSeparator) return nullptr;
    return HoldsWildcard(path->names.back()) ? SearchFolder(*path) : SearchEntry(*path);
}

}  // namespace platform
