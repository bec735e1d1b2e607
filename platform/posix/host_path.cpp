#include "platform/posix/host_path.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cwchar>
#include <memory>

#include "platform/letter_case.h"
#include "platform/posix/device_root.h"
#include "platform/utf.h"

namespace platform {

namespace {

bool ExistsOnDisk(const std::string& path) {
    struct stat ignored;
    return lstat(path.c_str(), &ignored) == 0;
}

// What the device's file system takes in no name; a name on disk may hold them, a new one may not.
bool IsPossibleNewName(const std::wstring& name) {
    return std::none_of(name.begin(), name.end(),
                        [](wchar_t unit) { return unit < L' ' || std::wcschr(L"<>|\":", unit) != nullptr; });
}

// A lone surrogate has no form on disk.
bool HasDiskForm(const std::wstring& name) { return ToUtf16(ToUtf8(name)) == name; }

bool IsPossibleName(const std::wstring& name) { return !HoldsWildcard(name) && HasDiskForm(name); }

bool IsReachable(const Entry& entry) {
    return !HoldsWildcard(entry.name) && entry.name.find(L'\\') == std::wstring::npos &&
           WithoutDotsAndBlanksAtEnd(entry.name) == entry.name && ToUtf8(entry.name) == entry.nameOnDisk;
}

// The entry of that name in any letter case; nothing when there is none.
std::optional<std::string> NameInAnyCase(const std::string& folder, const std::wstring& name) {
    std::optional<std::string> found;
    const auto entries = EntriesOf(folder + '/');
    if (!entries) return found;
    for (const Entry& entry : *entries)
        if (EqualIgnoringCase(entry.name, name) && (!found || entry.nameOnDisk < *found))
            found = entry.nameOnDisk;
    return found;
}

// The path of an existing folder; nothing when a name of it is missing. The whole path as it is spelled mostly
// exists: then one look at the disk is enough.
std::optional<std::string> FolderOnDisk(std::vector<std::wstring>::const_iterator name,
                                        std::vector<std::wstring>::const_iterator end) {
    std::string asSpelled = DeviceRoot();
    for (auto each = name; each != end; ++each) asSpelled += '/' + ToUtf8(*each);
    if (ExistsOnDisk(asSpelled + '/')) return asSpelled;

    std::string path = DeviceRoot();
    for (; name != end; ++name) {
        const std::string exact = ToUtf8(*name);
        const auto nameOnDisk = ExistsOnDisk(path + '/' + exact) ? exact : NameInAnyCase(path, *name);
        if (!nameOnDisk) return std::nullopt;
        path += '/' + *nameOnDisk;
    }
    return path;
}

}  // namespace

std::optional<HostPath> FindOnHost(const DevicePath& path) {
    const auto& names = path.names;
    if (!std::all_of(names.begin(), names.end(), IsPossibleName)) return std::nullopt;
    if (names.empty()) return HostPath{DeviceRoot(), "", true, path.endsInSeparator};
    const auto folder = FolderOnDisk(names.begin(), names.end() - 1);
    if (!folder) return std::nullopt;
    HostPath found{*folder, ToUtf8(names.back()), true, path.endsInSeparator};
    if (ExistsOnDisk(found.Text())) return found;
    const auto nameOnDisk = NameInAnyCase(*folder, names.back());
    if (!nameOnDisk && !IsPossibleNewName(names.back())) return std::nullopt;
    if (nameOnDisk)
        found.name = *nameOnDisk;
    else
        found.exists = false;
    return found;
}

std::optional<HostPath> FindOnHost(const wchar_t* path) {
    const auto parsed = ParseDevicePath(path);
    return parsed ? FindOnHost(*parsed) : std::nullopt;
}

std::optional<HostPath> FindFileOnHost(const wchar_t* path) {
    auto found = FindOnHost(path);
    if (found && (found->IsRoot() || found->endsInSeparator)) return std::nullopt;
    return found;
}

std::optional<std::vector<Entry>> EntriesOf(const std::string& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    if (listing == nullptr) return std::nullopt;
    std::vector<Entry> entries;
    while (const dirent* read = readdir(listing.get())) {
        Entry entry{ToUtf16(read->d_name), read->d_name};
        if (IsReachable(entry)) entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace platform
