// A file's whole content exchanged in one step, and files in the system's temporary folder.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <string_view>

#include "platform/file.h"
#include "platform/utf.h"
#include "platform/windows/host_path.h"

namespace platform {

namespace {

constexpr DWORD kLargestWrite = 1u << 30;

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kLargestWrite));
        DWORD written = 0;
        if (!::WriteFile(file, bytes.data(), size, &written, nullptr) || written == 0) return false;
        bytes.remove_prefix(written);
    }
    return true;
}

// CREATE_NEW or CREATE_ALWAYS. On storage when this returns true.
bool WriteNewContent(const std::wstring& path, DWORD creation, const std::string& bytes) {
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool isWritten = WriteAll(file, bytes) && ::FlushFileBuffers(file);
    return ::CloseHandle(file) && isWritten;
}

std::wstring NameBeside(const std::wstring& path) {
    static std::atomic<unsigned> count = 0;
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
    return folder + L"~qtrace-" + std::to_wstring(::GetCurrentProcessId()) + L'-' + std::to_wstring(count++) +
           L".tmp";
}

// ReplaceFileW keeps the attributes and rights of the file that it replaces.
bool PutInPlace(const std::wstring& beside, const std::wstring& path, bool exists) {
    if (exists) return ::ReplaceFileW(path.c_str(), beside.c_str(), nullptr, 0, nullptr, nullptr);
    return ::MoveFileExW(beside.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH);
}

struct Target {
    std::wstring path;
    std::optional<Found> existing;
};

// What a link leads to, not the link; the path itself where the system cannot say.
std::wstring RealPath(const std::wstring& path) {
    constexpr DWORD kLongestPath = 32768;
    const HANDLE opened = ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return path;
    std::wstring real(kLongestPath, L'\0');
    real.resize(::GetFinalPathNameByHandleW(opened, real.data(), kLongestPath, VOLUME_NAME_DOS));
    ::CloseHandle(opened);
    return real.empty() ? path : real;
}

std::optional<Target> FindTarget(const wchar_t* path) {
    const auto file = FindFileOnHost(path);
    if (!file) return std::nullopt;
    const auto existing = LookAt(file->Text());
    if (existing && (existing->isFolder || existing->isReadOnly)) return std::nullopt;
    return Target{existing ? RealPath(file->Text()) : file->Text(), existing};
}

enum class Exchanged { Yes, FolderClosed, No };

bool IsStill(const FileState& read, const std::wstring& path) {
    const auto found = LookAt(path);
    return found && found->state == read;
}

// Whatever file is there, when none was `read`. Anything but Yes leaves it as it was.
Exchanged Exchange(const Target& target, const std::string& bytes, const FileState* read) {
    const std::wstring beside = NameBeside(target.path);
    if (WriteNewContent(beside, CREATE_NEW, bytes) && (read == nullptr || IsStill(*read, target.path)) &&
        PutInPlace(beside, target.path, target.existing.has_value()))
        return Exchanged::Yes;
    const bool isFolderClosed = ::GetLastError() == ERROR_ACCESS_DENIED;
    ::DeleteFileW(beside.c_str());
    return isFolderClosed ? Exchanged::FolderClosed : Exchanged::No;
}

void SetWriteTime(const std::wstring& path, const FILETIME& time) {
    const HANDLE file = ::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    ::SetFileTime(file, nullptr, nullptr, &time);
    ::CloseHandle(file);
}

}  // namespace

bool ExchangeFileContent(const wchar_t* path, const FileState& read, const std::string& bytes) {
    const auto target = FindTarget(path);
    if (!target || !target->existing || target->existing->state != read) return false;
    if (Exchange(*target, bytes, &read) != Exchanged::Yes) return false;
    SetWriteTime(target->path, target->existing->lastWriteTime);
    return true;
}

bool ReplaceFileContent(const wchar_t* path, const std::string& bytes) {
    const auto target = FindTarget(path);
    if (!target) return false;
    const Exchanged exchanged = Exchange(*target, bytes, nullptr);
    return exchanged == Exchanged::Yes ||
           (exchanged == Exchanged::FolderClosed && WriteNewContent(target->path, CREATE_ALWAYS, bytes));
}

std::FILE* CreateTemporaryFile(std::string& path) {
    wchar_t folder[MAX_PATH + 1], file[MAX_PATH];
    if (::GetTempPathW(static_cast<DWORD>(std::size(folder)), folder) == 0) return nullptr;
    if (::GetTempFileNameW(folder, L"qtr", 0, file) == 0) return nullptr;
    std::FILE* stream = ::_wfopen(file, L"wb+N");
    if (stream == nullptr)
        ::DeleteFileW(file);
    else
        path = ToUtf8(file);
    return stream;
}

std::FILE* OpenTemporaryFile(const std::string& path) { return ::_wfopen(ToUtf16(path).c_str(), L"rbN"); }

bool DeleteTemporaryFile(const std::string& path) { return ::DeleteFileW(ToUtf16(path).c_str()); }

}  // namespace platform
