#include "host/text/file_place.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <tuple>

#include "host/text/descriptor.h"

namespace host {
namespace {

bool MoveToFreeName(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return link(from.c_str(), to.c_str()) == 0 && unlink(from.c_str()) == 0;
}

void CommitFolder(const std::string& file) {
    const std::string folder = std::filesystem::absolute(file).parent_path().string();
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    Commit(descriptor);
    close(descriptor);
}

}  // namespace

// Another's file that only the superuser could give away becomes ours.
bool TakeRightsOf(const std::string& file, int descriptor) {
    struct stat existing {};
    if (stat(file.c_str(), &existing) == 0) {
        std::ignore = fchown(descriptor, existing.st_uid, existing.st_gid);
        return fchmod(descriptor, existing.st_mode & 07777u) == 0;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return fchmod(descriptor, 0666 & ~mask) == 0;
}

std::string MoveToPlace(const std::string& from, const std::string& to, bool overwrite) {
    const bool moved = overwrite ? rename(from.c_str(), to.c_str()) == 0 : MoveToFreeName(from, to);
    if (!moved) return std::strerror(errno);
    CommitFolder(to);
    return "";
}

unsigned long ProcessNumber() { return static_cast<unsigned long>(getpid()); }

}  // namespace host
