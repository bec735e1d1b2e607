// Streams, which the C library itself commits for mode letter c, and files and folders by name.
#include "platform/file.h"

#include <io.h>
#include <windows.h>

#include <cwchar>

#include "platform/code_page.h"
#include "platform/device_path.h"
#include "platform/windows/host_path.h"

namespace platform {

namespace {

// A path or mode in the ANSI code page; empty when it does not convert or is too long for a path.
std::wstring Wide(const char* text) {
    wchar_t wide[kPathLimit];
    if (MultiByteToWideChar(kAnsiCodePage, text, -1, wide, static_cast<int>(kPathLimit)) == 0) return {};
    return wide;
}

bool IsPlainFileOrMissing(const std::wstring& file) {
    const DWORD attributes = ::GetFileAttributesW(file.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ||
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
}

// The runtime does not know mode letter x everywhere.
bool MakeNewFile(const std::wstring& file) {
    const HANDLE made = ::CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    return made != INVALID_HANDLE_VALUE && ::CloseHandle(made) != 0;
}

}  // namespace

std::FILE* fopen(const char* path, const char* mode) { return _wfopen(Wide(path).c_str(), Wide(mode).c_str()); }

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
    const auto file = FindOnHost(path);
    if (!file || mode == nullptr || std::wcschr(L"rwa", mode[0]) == nullptr || mode[0] == L'\0') return nullptr;
    if (HoldsWildcard(path) || !IsPlainFileOrMissing(*file)) return nullptr;
    std::wstring forRuntime = std::wstring(mode) + L'N';  // N: not inherited by child processes
    if (const std::size_t onlyNew = forRuntime.find(L'x'); onlyNew != std::wstring::npos) {
        if (!MakeNewFile(*file)) return nullptr;
        forRuntime.erase(onlyNew, 1);
    }
    return ::_wfopen(file->c_str(), forRuntime.c_str());
}

int fflush(std::FILE* stream) { return stream == nullptr ? EOF : std::fflush(stream); }

// The runtime forgets what it could not write by itself.
bool CutBack(std::FILE* stream, std::int64_t size) {
    std::clearerr(stream);
    return ::_chsize_s(::_fileno(stream), size) == 0;
}

int fclose(std::FILE* stream) { return stream == nullptr ? EOF : std::fclose(stream); }

bool CreateDirectoryW(const wchar_t* path) {
    const auto folder = FindOnHost(path);
    return folder && ::CreateDirectoryW(folder->c_str(), nullptr);
}

bool DeleteFileW(const wchar_t* path) {
    const auto file = FindOnHost(path);
    return file && ::DeleteFileW(file->c_str());
}

bool MoveFileW(const wchar_t* from, const wchar_t* to) {
    const auto source = FindOnHost(from);
    const auto target = FindOnHost(to);
    return source && target && ::MoveFileW(source->c_str(), target->c_str());
}

}  // namespace platform
