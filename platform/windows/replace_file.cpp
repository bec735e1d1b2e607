// A file's whole content exchanged in one step, and files in the system's temporary folder.
#include <windows.h>

#include <optional>

#include "platform/file.h"
#include "platform/utf.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/host_path.h"
#include "platform/windows/new_content.h"

namespace platform {

namespace {

struct Target {
    std::wstring path;
    std::optional<Found> existing;
};

// What a link leads to, not the link; the path itself where the system cannot say.
std::wstring RealPath(const std::wstring& path) {
    constexpr DWORD kLongestPath = 32768;
    const HANDLE opened = ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kSharedWithAll, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
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

// Whatever file is there, when none was `read`. Anything but Yes leaves it as it was.
Exchanged Exchange(const Target& target, const ContentInPieces& content, const FileState* read) {
    std::wstring beside;
    DWORD error = WriteBeside(target.path, content, target.existing ? &*target.existing : nullptr,
                              read == nullptr ? WriteTime::Now : WriteTime::Kept, beside);
    if (error == ERROR_SUCCESS) error = PutInPlace(beside, target.path, read);
    if (error == ERROR_SUCCESS) return Exchanged::Yes;
    return error == ERROR_ACCESS_DENIED ? Exchanged::FolderClosed : Exchanged::No;
}

}  // namespace

bool ExchangeFileContent(const wchar_t* path, const FileState& read, const std::string& bytes) {
    const auto target = FindTarget(path);
    if (!target || !target->existing || target->existing->state != read) return false;
    return Exchange(*target, InOnePiece(bytes), &read) == Exchanged::Yes;
}

bool ReplaceFileContent(const wchar_t* path, const ContentInPieces& content) {
    const auto target = FindTarget(path);
    if (!target) return false;
    const Exchanged exchanged = Exchange(*target, content, nullptr);
    return exchanged == Exchanged::Yes ||
           (exchanged == Exchanged::FolderClosed && WriteOver(target->path, Whole(content)));
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
