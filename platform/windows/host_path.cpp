#include "platform/windows/host_path.h"

#include <algorithm>
#include <cwchar>

#include "platform/letter_case.h"
#include "platform/utf.h"
#include "platform/windows/file_handle.h"

namespace platform {

namespace {

// A lone surrogate is no text, and a colon would lead into another stream of the file.
bool IsPossibleName(const std::wstring& name) {
    return std::none_of(
               name.begin(), name.end(),
               [](wchar_t unit) { return unit < L' ' || std::wcschr(L"<>|\":*?", unit) != nullptr; }) &&
           ToUtf16(ToUtf8(name)) == name;
}

bool IsDrive(const std::wstring& name) { return name.size() == 2 && name[1] == L':'; }

std::wstring CurrentDrive() {
    wchar_t folder[3] = L"";
    std::wstring whole(::GetCurrentDirectoryW(0, nullptr), L'\0');
    ::GetCurrentDirectoryW(static_cast<DWORD>(whole.size()), whole.data());
    whole.copy(folder, 2);
    return folder;
}

// The second name that some file systems keep for an entry, like AVERYL~1.GPX. Whoever made a file of that name
// would empty the other.
bool IsShortName(const HostPath& path) {
    if (path.name.find(L'~') == std::wstring::npos) return false;
    WIN32_FIND_DATAW found;
    const HANDLE search = ::FindFirstFileW(path.Text().c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return false;
    ::FindClose(search);
    return !EqualIgnoringCase(found.cFileName, path.name);
}

}  // namespace

std::optional<HostPath> FindOnHost(const DevicePath& path) {
    auto name = path.names.begin();
    HostPath found{DeviceRoot(), L"", path.endsInSeparator};
    if (found.folder.empty()) {
        const bool hasDrive = name != path.names.end() && IsDrive(*name);
        found.folder = L"\\\\?\\" + (hasDrive ? *name++ : CurrentDrive());
    }
    if (!std::all_of(name, path.names.end(), IsPossibleName)) return std::nullopt;
    for (; name != path.names.end(); ++name) {
        if (!found.IsRoot()) found.folder = found.Text();
        found.name = *name;
    }
    return IsShortName(found) ? std::nullopt : std::optional(found);
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

std::optional<Found> LookAt(const std::wstring& hostPath) {
    const FileHandle opened(::CreateFileW(hostPath.c_str(), FILE_READ_ATTRIBUTES, kSharedWithAll, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION status;
    if (!opened.IsOpen() || ::GetFileType(opened.Get()) != FILE_TYPE_DISK ||
        !::GetFileInformationByHandle(opened.Get(), &status))
        return std::nullopt;
    return Found{(status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                 (status.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0,
                 status.dwFileAttributes,
                 status.ftCreationTime,
                 status.ftLastWriteTime,
                 StateIn(status)};
}

FileState StateIn(const BY_HANDLE_FILE_INFORMATION& status) {
    const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    return {status.dwVolumeSerialNumber, joined(status.nFileIndexHigh, status.nFileIndexLow),
            joined(status.nFileSizeHigh, status.nFileSizeLow),
            joined(status.ftLastWriteTime.dwHighDateTime, status.ftLastWriteTime.dwLowDateTime), 0};
}

}  // namespace platform
