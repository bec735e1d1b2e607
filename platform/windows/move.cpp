#include "platform/windows/move.h"

#include "platform/windows/file_handle.h"
#include "platform/windows/persist.h"

namespace platform {

namespace {

// On storage when this returns, but for folders and read-only files where there is no journal.
bool RenameWithoutReplacing(const std::wstring& from, const std::wstring& to) {
    if (!Persist([&] { return ::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH); })) return false;
    Commit(to);
    return true;
}

// With the original's attributes and times, on storage when this returns. A read-only file could not be brought
// there.
bool CopyToStorage(const std::wstring& from, DWORD attributes, const std::wstring& copy) {
    return ::CopyFileW(from.c_str(), copy.c_str(), FALSE) &&
           ::SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL) && Commit(copy) &&
           ::SetFileAttributesW(copy.c_str(), attributes);
}

bool Delete(const std::wstring& file) {
    ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    return Persist([&] { return ::DeleteFileW(file.c_str()); });
}

// The copy gets its name when it is complete, and the original goes when the copy has it.
bool MoveBetweenVolumes(const std::wstring& from, const std::wstring& to) {
    const DWORD attributes = ::GetFileAttributesW(from.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
    std::wstring copy;
    if (!FileHandle(MakeBeside(to, FILE_ATTRIBUTE_NORMAL, copy)).IsOpen()) return false;
    const bool isThere = CopyToStorage(from, attributes, copy) && RenameWithoutReplacing(copy, to);
    if (isThere && Delete(from)) return true;
    ::SetFileAttributesW(from.c_str(), attributes);
    Delete(isThere ? to : copy);
    return false;
}

}  // namespace

bool MoveWithoutReplacing(const std::wstring& from, const std::wstring& to) {
    if (RenameWithoutReplacing(from, to)) return true;
    return ::GetLastError() == ERROR_NOT_SAME_DEVICE && MoveBetweenVolumes(from, to);
}

}  // namespace platform
