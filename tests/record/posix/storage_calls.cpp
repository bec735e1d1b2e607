#include "tests/record/posix/storage_calls.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

extern "C" int fdatasync(int descriptor) {
    const auto link = "/proc/self/fd/" + std::to_string(descriptor);
    storage_calls::commits.push_back(std::filesystem::read_symlink(link).filename().string());
    if (storage_calls::allCommitsFail || storage_calls::commits.back() == storage_calls::failingCommit)
        return -1;
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

extern "C" int ftruncate(int descriptor, off_t size) noexcept {
    if (storage_calls::cutsFail) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_ftruncate, descriptor, size));
}

extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
    ++storage_calls::moves;
    if (storage_calls::movesToFail > 0) {
        --storage_calls::movesToFail;
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}
