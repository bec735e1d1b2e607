// The three ways to move without replacing: the kernel's own, by a second name, and, for want of both, by
// looking first.
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/platform/file_names_fixture.h"
#include "tests/platform/posix/changing_places.h"

namespace {

bool s_bKnowsNoReplace = true;
bool s_bKnowsLinks = true;

template <bool knowsNoReplace, bool knowsLinks>
void Take() {
    s_bKnowsNoReplace = knowsNoReplace;
    s_bKnowsLinks = knowsLinks;
}

}  // namespace

bool (*g_pMayChangePlaces)() = nullptr;

// The program's own definitions come before the C library's: so they stand for older kernels and simpler file
// systems.
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
    if (!s_bKnowsNoReplace) return errno = EINVAL, -1;
    if (flags == RENAME_EXCHANGE && g_pMayChangePlaces != nullptr && !g_pMayChangePlaces())
        return errno = EIO, -1;
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" int link(const char* from, const char* to) noexcept {
    if (!s_bKnowsLinks) return errno = EPERM, -1;
    return static_cast<int>(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

std::vector<WayOfMoving> WaysOfMoving() {
    return {{"ByTheKernel", Take<true, true>},
            {"BySecondName", Take<false, true>},
            {"ByLookingFirst", Take<false, false>}};
}
