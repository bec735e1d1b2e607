// Folders and files by name: made, moved and deleted. Streams: platform/windows/file.cpp.
#include "platform/file.h"
#include "platform/letter_case.h"
#include "platform/windows/host_path.h"
#include "platform/windows/move.h"
#include "platform/windows/persist.h"

namespace platform {

namespace {

// What would be refused for good is not waited for.
bool MayBeDeleted(const std::wstring& hostPath) {
    const DWORD attributes = ::GetFileAttributesW(hostPath.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

}  // namespace

bool CreateDirectoryW(const wchar_t* path) {
    const auto folder = FindOnHost(path);
    return folder && !folder->IsRoot() && ::CreateDirectoryW(folder->Text().c_str(), nullptr);
}

bool DeleteFileW(const wchar_t* path) {
    const auto file = FindFileOnHost(path);
    return file && MayBeDeleted(file->Text()) && Persist([&] { return ::DeleteFileW(file->Text().c_str()); });
}

bool MoveFileW(const wchar_t* from, const wchar_t* to) {
    const auto source = FindOnHost(from);
    const auto target = FindOnHost(to);
    if (!source || !target || source->IsRoot() || target->IsRoot()) return false;
    const auto existing = LookAt(source->Text());
    const bool isFolder = existing && existing->isFolder;
    if (!isFolder && (source->endsInSeparator || target->endsInSeparator)) return false;
    // Some systems take two names of one file for the same.
    const bool isSameName = EqualIgnoringCase(source->Text(), target->Text());
    if (!isSameName && ::GetFileAttributesW(target->Text().c_str()) != INVALID_FILE_ATTRIBUTES) return false;
    return MoveWithoutReplacing(source->Text(), target->Text());
}

}  // namespace platform
