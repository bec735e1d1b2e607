// A file's whole content exchanged in one step, and files in the system's temporary folder.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <string_view>

#include "platform/code_page.h"
#include "platform/device_path.h"
#include "platform/file.h"
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
    bool exists;
};

std::optional<Target> FindTarget(const wchar_t* path) {
    const auto file = FindOnHost(path);
    if (!file || HoldsWildcard(path)) return std::nullopt;
    const DWORD attributes = ::GetFileAttributesW(file->c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) return std::nullopt;
    return Target{*file, exists};
}

enum class Exchanged { Yes, FolderClosed, No };

// Anything but Yes leaves the file as it was.
Exchanged Exchange(const Target& target, const std::string& bytes) {
    const std::wstring beside = NameBeside(target.path);
    if (WriteNewContent(beside, CREATE_NEW, bytes) && PutInPlace(beside, target.path, target.exists))
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

std::wstring FromUtf8(const std::string& text) {
    std::wstring wide(text.size() + 1, L'\0');  // never more units than bytes
    const int length =
        MultiByteToWideChar(kUtf8CodePage, text.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    wide.resize(length == 0 ? 0 : static_cast<std::size_t>(length - 1));
    return wide;
}

std::string ToUtf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(kUtf8CodePage, text, -1, nullptr, 0);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(kUtf8CodePage, text, -1, utf8.data(), size);
    utf8.resize(utf8.size() - 1);
    return utf8;
}

}  // namespace

bool ExchangeFileContent(const wchar_t* path, const std::string& bytes) {
    const auto target = FindTarget(path);
    if (!target) return false;
    WIN32_FILE_ATTRIBUTE_DATA old{};
    const bool existed = ::GetFileAttributesExW(target->path.c_str(), GetFileExInfoStandard, &old) != 0;
    if (Exchange(*target, bytes) != Exchanged::Yes) return false;
    if (existed) SetWriteTime(target->path, old.ftLastWriteTime);
    return true;
}

bool ReplaceFileContent(const wchar_t* path, const std::string& bytes) {
    const auto target = FindTarget(path);
    if (!target) return false;
    const Exchanged exchanged = Exchange(*target, bytes);
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

std::FILE* OpenTemporaryFile(const std::string& path) { return ::_wfopen(FromUtf8(path).c_str(), L"rbN"); }

bool DeleteTemporaryFile(const std::string& path) { return ::DeleteFileW(FromUtf8(path).c_str()); }

}  // namespace platform
