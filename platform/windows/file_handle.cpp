#include "platform/windows/file_handle.h"

#include <algorithm>
#include <atomic>

#include "platform/windows/persist.h"

namespace platform {

namespace {

constexpr DWORD kLargestWrite = 1u << 30;

std::wstring NextNameBeside(const std::wstring& path) {
    static std::atomic<unsigned> count = 0;
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
    return folder + L".qtrace-" + std::to_wstring(::GetCurrentProcessId()) + L'-' + std::to_wstring(count++) +
           L".tmp";
}

}  // namespace

HANDLE OpenToWrite(const std::wstring& path, DWORD creation, DWORD attributes) {
    return ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, creation, attributes, nullptr);
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

bool Commit(const std::wstring& path) {
    const FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, kSharedWithAll, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    return file.IsOpen() && ::FlushFileBuffers(file.Get());
}

HANDLE MakeBeside(const std::wstring& path, DWORD attributes, std::wstring& beside) {
    constexpr int kAttempts = 1000;  // names that an earlier process of this number left behind
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        beside = NextNameBeside(path);
        const HANDLE made = OpenToWrite(beside, CREATE_NEW, attributes);
        if (made != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS) return made;
    }
    return INVALID_HANDLE_VALUE;
}

void Discard(const std::wstring& beside) {
    Persist([&] { return ::DeleteFileW(beside.c_str()); });
}

}  // namespace platform
