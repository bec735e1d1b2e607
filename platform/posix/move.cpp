#include "platform/posix/move.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <tuple>

#include "platform/posix/descriptor.h"

namespace platform {

namespace {

// What a system call made of an attempt.
enum class Outcome { Done, Refused, Unsupported };

Outcome RenameToNewName(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return Outcome::Done;
    // A file system, or a kernel, that does not know the flag.
    return errno == EINVAL || errno == ENOSYS ? Outcome::Unsupported : Outcome::Refused;
}

// For files: a second name is only made where there is none.
Outcome LinkToNewName(const std::string& from, const std::string& to) {
    if (::link(from.c_str(), to.c_str()) != 0)
        return errno == EEXIST || errno == EXDEV ? Outcome::Refused : Outcome::Unsupported;
    if (::unlink(from.c_str()) == 0) return Outcome::Done;
    ::unlink(to.c_str());
    return Outcome::Refused;
}

// The last resort, for folders and for file systems without links: another process could take the name in
// between.
bool RenameIfMissing(const std::string& from, const std::string& to) {
    struct stat ignored;
    return ::lstat(to.c_str(), &ignored) != 0 && errno == ENOENT && ::rename(from.c_str(), to.c_str()) == 0;
}

bool RenameWithoutReplacing(const std::string& from, const std::string& to) {
    Outcome outcome = RenameToNewName(from, to);
    if (outcome == Outcome::Unsupported) outcome = LinkToNewName(from, to);
    return outcome == Outcome::Done || (outcome == Outcome::Unsupported && RenameIfMissing(from, to));
}

bool CopyBytes(int from, int to) {
    char bytes[65536];
    for (;;) {
        const ssize_t size = ::read(from, bytes, sizeof bytes);
        if (size == 0) return true;
        if (size < 0 && errno == EINTR) continue;
        if (size < 0 || !WriteAll(to, {bytes, static_cast<std::size_t>(size)})) return false;
    }
}

// A copy, on storage when this returns, with the original's rights and times where the file system has such.
bool CopyFile(int from, const struct stat& status, int to) {
    if (!CopyBytes(from, to)) return false;
    const timespec times[] = {status.st_atim, status.st_mtim};
    std::ignore = ::fchmod(to, status.st_mode & 07777);
    std::ignore = ::futimens(to, times);
    return Commit(to);
}

// The original goes when storage knows the copy by its name.
bool Delete(const std::string& original, const std::string& copy, const std::string& folder) {
    CommitFolder(folder);
    if (::unlink(original.c_str()) == 0) return true;
    ::unlink(copy.c_str());
    return false;
}

// The copy gets its name when it is complete.
bool MoveBetweenFileSystems(const std::string& from, const std::string& to) {
    const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status;
    if (!source.IsOpen() || ::fstat(source.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    const std::string folder = to.substr(0, to.rfind('/'));
    std::string copyPath;
    Descriptor copy = MakeUniqueFile(folder, 0600, copyPath);
    if (!copy.IsOpen()) return false;
    const bool isCopied = CopyFile(source.Get(), status, copy.Get()) && copy.Close();
    if (isCopied && RenameWithoutReplacing(copyPath, to)) return Delete(from, to, folder);
    ::unlink(copyPath.c_str());
    return false;
}

}  // namespace

bool MoveWithoutReplacing(const std::string& from, const std::string& to) {
    if (RenameWithoutReplacing(from, to)) return true;
    return errno == EXDEV && MoveBetweenFileSystems(from, to);
}

}  // namespace platform
