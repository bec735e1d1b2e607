#include "platform/windows/new_content.h"

#include <cstddef>
#include <vector>

#include "platform/windows/file_handle.h"
#include "platform/windows/persist.h"

namespace platform {

namespace {

// The rest is the system's own business, or of files that are not written.
constexpr DWORD kKeptAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                  FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;

// The system finds room for all of it, or refuses.
bool Resize(HANDLE file, LONGLONG size) {
    LARGE_INTEGER place;
    place.QuadPart = size;
    return ::SetFilePointerEx(file, place, nullptr, FILE_BEGIN) && ::SetEndOfFile(file);
}

bool GoToBegin(HANDLE file) { return ::SetFilePointerEx(file, LARGE_INTEGER{}, nullptr, FILE_BEGIN); }

// Never none: a system that says nothing of what went wrong has not done it all the same.
DWORD LastError() {
    const DWORD error = ::GetLastError();
    return error == ERROR_SUCCESS ? ERROR_WRITE_FAULT : error;
}

// The error of the write that failed, which what the content does afterwards would hide.
DWORD WritePieces(HANDLE file, const ContentInPieces& content) {
    DWORD error = ERROR_SUCCESS;
    content([&](std::string_view piece) {
        if (error == ERROR_SUCCESS && !WriteAll(file, piece)) error = LastError();
        return error == ERROR_SUCCESS;
    });
    return error;
}

// Closes the file.
DWORD Fill(HANDLE made, const ContentInPieces& content, const Found* existing, WriteTime time) {
    const FileHandle file(made);
    const DWORD error = WritePieces(file.Get(), content);
    if (error != ERROR_SUCCESS) return error;
    if (existing != nullptr)
        ::SetFileTime(file.Get(), &existing->creationTime, nullptr,
                      time == WriteTime::Kept ? &existing->lastWriteTime : nullptr);
    return ::FlushFileBuffers(file.Get()) ? ERROR_SUCCESS : LastError();
}

// Discards a file unless it is to stay.
class Draft {
 public:
    explicit Draft(const std::wstring& path) : m_path(path) {}
    ~Draft() {
        if (!m_stays) Discard(m_path);
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    void Stay() { m_stays = true; }

 private:
    const std::wstring& m_path;
    bool m_stays = false;
};

constexpr SECURITY_INFORMATION kOwner = OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION;

// Who may do what with a file, and whose it is; empty for a missing file, and where the process may not know.
// Rights that came from the folder go on to be known as such.
std::vector<std::byte> RightsOf(const std::wstring& path) {
    constexpr SECURITY_INFORMATION kAll = kOwner | DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    ::GetFileSecurityW(path.c_str(), kAll, nullptr, 0, &size);
    std::vector<std::byte> rights(size);
    if (!::GetFileSecurityW(path.c_str(), kAll, rights.data(), size, &size)) return {};
    ::SetSecurityDescriptorControl(rights.data(), SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
    return rights;
}

// The owner last: who gives a file away may have no say in it any more.
void Give(std::vector<std::byte> rights, const std::wstring& path) {
    if (rights.empty()) return;
    ::SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data());
    ::SetFileSecurityW(path.c_str(), kOwner, rights.data());
}

// False, with an error that does not pass, for another file than the one that was read.
bool IsStill(const FileState& read, const std::wstring& path) {
    const auto found = LookAt(path);
    if (found && found->state == read) return true;
    ::SetLastError(ERROR_FILE_INVALID);
    return false;
}

}  // namespace

DWORD WriteBeside(const std::wstring& path, const ContentInPieces& content, const Found* existing,
                  WriteTime time, std::wstring& beside) {
    const DWORD kept = existing == nullptr ? 0 : existing->attributes & kKeptAttributes;
    const HANDLE made = MakeBeside(path, kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept, beside);
    if (made == INVALID_HANDLE_VALUE) return LastError();
    Draft draft(beside);
    const DWORD error = Fill(made, content, existing, time);
    if (error == ERROR_SUCCESS) draft.Stay();
    return error;
}

// The one call of the system that replaces a file without taking it out of the way first. The rights come
// after it: they could take away from this process what it needs to rename the file, or to discard it.
DWORD PutInPlace(const std::wstring& beside, const std::wstring& path, const FileState* read) {
    Draft draft(beside);
    const auto rights = RightsOf(path);
    const bool isDone = Persist([&] {
        return (read == nullptr || IsStill(*read, path)) &&
               ::MoveFileExW(beside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    });
    if (!isDone) return LastError();
    draft.Stay();
    Give(rights, path);
    Commit(path);
    return ERROR_SUCCESS;
}

// Room first, then content: on a full storage the old content is still whole.
bool WriteOver(const std::wstring& path, const std::string& bytes) {
    const FileHandle file(OpenToWrite(path, OPEN_ALWAYS));
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
