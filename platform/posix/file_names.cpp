// Folders and files by name: made, moved and deleted. Streams: platform/posix/file.cpp.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/file.h"
#include "platform/letter_case.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/file_kind.h"
#include "platform/posix/host_path.h"
#include "platform/posix/move.h"
#include "platform/utf.h"

namespace platform {

namespace {

// The same entry of one folder, spelled in two ways.
bool IsSameEntry(const HostPath& a, const HostPath& b) {
    struct stat statusOfA, statusOfB;
    return a.folder == b.folder && EqualIgnoringCase(ToUtf16(a.name), ToUtf16(b.name)) &&
           ::lstat(a.Text().c_str(), &statusOfA) == 0 && ::lstat(b.Text().c_str(), &statusOfB) == 0 &&
           statusOfA.st_dev == statusOfB.st_dev && statusOfA.st_ino == statusOfB.st_ino;
}

// The entry gets the name as it was asked for, which may differ from its own in letter case.
bool Respell(const HostPath& entry, const std::wstring& name) {
    const std::string respelled = entry.folder + '/' + ToUtf8(name);
    if (::rename(entry.Text().c_str(), respelled.c_str()) != 0) return false;
    CommitFolder(entry.folder);
    return true;
}

bool MayBeMoved(const HostPath& from, const HostPath& to) {
    struct stat status;
    if (from.IsRoot() || to.IsRoot() || !from.exists) return false;
    const bool isFolder = ::stat(from.Text().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return isFolder || !(from.endsInSeparator || to.endsInSeparator);
}

}  // namespace

bool CreateDirectoryW(const wchar_t* path) {
    const auto folder = FindOnHost(path);
    if (!folder || folder->exists || ::mkdir(folder->Text().c_str(), 0777) != 0) return false;
    CommitFolder(folder->folder);
    return true;
}

bool DeleteFileW(const wchar_t* path) {
    const auto file = FindFileOnHost(path);
    struct stat status;
    if (!file || !file->exists) return false;
    const bool isDangling = ::stat(file->Text().c_str(), &status) != 0;
    if (!isDangling && (!S_ISREG(status.st_mode) || IsReadOnly(status))) return false;
    return ::unlink(file->Text().c_str()) == 0;
}

bool MoveFileW(const wchar_t* from, const wchar_t* to) {
    const auto source = FindOnHost(from);
    const auto parsed = ParseDevicePath(to);
    const auto target = FindOnHost(to);
    if (!source || !target || !MayBeMoved(*source, *target)) return false;
    if (target->exists) return IsSameEntry(*source, *target) && Respell(*target, parsed->names.back());
    if (!MoveWithoutReplacing(source->Text(), target->Text())) return false;
    CommitFolder(target->folder);
    if (source->folder != target->folder) CommitFolder(source->folder);
    return true;
}

}  // namespace platform
