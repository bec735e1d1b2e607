#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

namespace platform {

int Descriptor::Release() { return std::exchange(m_iDescriptor, -1); }

bool Descriptor::Close() {
    const int descriptor = Release();
    return descriptor < 0 || ::close(descriptor) == 0;
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool Commit(int descriptor) {
    int result;
    do {
        result = ::fdatasync(descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

void CommitFolder(const std::string& folder) {
    const Descriptor opened(::open((folder + '/').c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.IsOpen()) ::fsync(opened.Get());
}

Descriptor MakeUniqueFile(const std::string& folder, unsigned mode, std::string& path) {
    static std::atomic<unsigned> count = 0;
    constexpr int kAttempts = 1000;  // names that an earlier process of this number left behind
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        path = folder + "/.qtrace-" + std::to_string(::getpid()) + '-' + std::to_string(count++) + ".tmp";
        Descriptor made(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (made.IsOpen() || errno != EEXIST) return Descriptor(made.Release());
    }
    return Descriptor(-1);
}

}  // namespace platform
