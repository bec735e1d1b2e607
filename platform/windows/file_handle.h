// Handles of files: owned, written to the end, and brought to storage. Paths are those of the system
// (platform/windows/host_path.h).
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace platform {

inline constexpr DWORD kSharedWithAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Closes its handle at the end; may hold none.
class FileHandle {
 public:
    explicit FileHandle(HANDLE handle) : m_hFile(handle) {}
    ~FileHandle() {
        if (IsOpen()) ::CloseHandle(m_hFile);
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    bool IsOpen() const { return m_hFile != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_hFile; }

 private:
    HANDLE m_hFile;
};

// Nobody else opens the file meanwhile. INVALID_HANDLE_VALUE, with the system's error, when that cannot be.
HANDLE OpenToWrite(const std::wstring& path, DWORD creation, DWORD attributes = FILE_ATTRIBUTE_NORMAL);

// Writes all of it from the current position on, however many calls that takes.
bool WriteAll(HANDLE file, std::string_view bytes);

// Waits until storage has a file's content, and its name: a file system with a journal brings that to storage
// by then, and others with what lies in the folder. False when the file cannot be opened for it.
bool Commit(const std::wstring& path);

// A new file of a name of its own in the folder of `path`; its path goes to `beside`.
HANDLE MakeBeside(const std::wstring& path, DWORD attributes, std::wstring& beside);

void Discard(const std::wstring& beside);

}  // namespace platform
