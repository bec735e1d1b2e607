#include "platform/windows/new_content.h"

#include <algorithm>
#include <atomic>
#include <string_view>

namespace platform {

namespace {

constexpr DWORD kLargestWrite = 1u << 30;

// Closes its handle at the end; may hold none.
class OwnHandle {
 public:
    explicit OwnHandle(HANDLE handle) : m_hFile(handle) {}
    ~OwnHandle() {
        if (IsOpen()) ::CloseHandle(m_hFile);
    }
    OwnHandle(const OwnHandle&) = delete;
    OwnHandle& operator=(const OwnHandle&) = delete;
    bool IsOpen() const { return m_hFile != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_hFile; }

 private:
    HANDLE m_hFile;
};

HANDLE OpenToWrite(const std::wstring& path, DWORD creation) {
    return ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kLargestWrite));
        DWORD written = 0;
        if (!::WriteFile(file, bytes.data(), size, &written, nullptr) || written == 0) return false;
        bytes.remove_prefix(written);
    }
    return true;
}

// The system finds room for all of it, or refuses.
bool Resize(HANDLE file, LONGLONG size) {
    LARGE_INTEGER place;
    place.QuadPart = size;
    return ::SetFilePointerEx(file, place, nullptr, FILE_BEGIN) && ::SetEndOfFile(file);
}

bool GoToBegin(HANDLE file) { return ::SetFilePointerEx(file, LARGE_INTEGER{}, nullptr, FILE_BEGIN); }

std::wstring NextNameBeside(const std::wstring& path) {
    static std::atomic<unsigned> count = 0;
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
    return folder + L"~qtrace-" + std::to_wstring(::GetCurrentProcessId()) + L'-' + std::to_wstring(count++) +
           L".tmp";
}

HANDLE MakeBeside(const std::wstring& path, std::wstring& beside) {
    constexpr int kAttempts = 1000;  // names that an earlier process of this number left behind
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        beside = NextNameBeside(path);
        const HANDLE made = OpenToWrite(beside, CREATE_NEW);
        if (made != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS) return made;
    }
    return INVALID_HANDLE_VALUE;
}

// Never none: a system that says nothing of what went wrong has not done it all the same.
DWORD LastError() {
    const DWORD error = ::GetLastError();
    return error == ERROR_SUCCESS ? ERROR_WRITE_FAULT : error;
}

DWORD Fill(HANDLE made, const std::string& bytes, const FILETIME* time) {
    const OwnHandle file(made);
    if (!file.IsOpen() || !WriteAll(file.Get(), bytes)) return LastError();
    if (time != nullptr) ::SetFileTime(file.Get(), nullptr, nullptr, time);
    return ::FlushFileBuffers(file.Get()) ? ERROR_SUCCESS : LastError();
}

bool IsThere(const std::wstring& path) { return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

}  // namespace

DWORD WriteBeside(const std::wstring& path, const std::string& bytes, const FILETIME* time,
                  std::wstring& beside) {
    const HANDLE made = MakeBeside(path, beside);
    const DWORD error = Fill(made, bytes, time);
    if (made != INVALID_HANDLE_VALUE && error != ERROR_SUCCESS) ::DeleteFileW(beside.c_str());
    return error;
}

// ReplaceFileW can fail when it has the old file out of the way already. Any error of it but one says that
// there was an old file, so that this is what happened when there is none now.
DWORD PutInPlace(const std::wstring& beside, const std::wstring& path, IfMissing ifMissing, Replace replace) {
    if (replace(path.c_str(), beside.c_str(), nullptr, 0, nullptr, nullptr)) return ERROR_SUCCESS;
    DWORD error = LastError();
    const bool wasMissing = error == ERROR_FILE_NOT_FOUND;
    if (!IsThere(path) && (!wasMissing || ifMissing == IfMissing::Make)) {
        if (::MoveFileExW(beside.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH)) return ERROR_SUCCESS;
        error = LastError();
    }
    if (wasMissing || IsThere(path)) ::DeleteFileW(beside.c_str());
    return error;
}

// Room first, then content: on a full storage the old content is still whole.
bool WriteOver(const std::wstring& path, const std::string& bytes) {
    const OwnHandle file(OpenToWrite(path, OPEN_ALWAYS));
    const auto size = static_cast<LONGLONG>(bytes.size());
    LARGE_INTEGER before;
    if (!file.IsOpen() || !::GetFileSizeEx(file.Get(), &before)) return false;
    if (size > before.QuadPart && !Resize(file.Get(), size)) {
        Resize(file.Get(), before.QuadPart);
        return false;
    }
    return GoToBegin(file.Get()) && WriteAll(file.Get(), bytes) && Resize(file.Get(), size) &&
           ::FlushFileBuffers(file.Get());
}

}  // namespace platform
