// What a file's status says about it.
#pragma once

#include <sys/stat.h>

#include "platform/file.h"

namespace platform {

// 32-bit systems have smaller ones unless they are asked not to: they end at 2 GiB and in 2038.
static_assert(sizeof(off_t) == 8 && sizeof(time_t) == 8);

// The read-only attribute of a device's file: nobody may write it. Said of the file, not of who asks: the
// superuser, whom rights do not hold back, does not write or delete such a file either.
inline bool IsReadOnly(const struct stat& status) {
    return (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

inline FileState StateIn(const struct stat& status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
            static_cast<std::uint64_t>(status.st_size), static_cast<std::uint64_t>(status.st_mtim.tv_sec),
            static_cast<std::uint64_t>(status.st_mtim.tv_nsec)};
}

}  // namespace platform
