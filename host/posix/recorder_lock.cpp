#include "host/recording/recorder_lock.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <tuple>

namespace host {
namespace {

// By its number, as the file tells it. A holder that has just begun has not written it yet.
std::string HolderIn(int descriptor) {
    std::array<char, 32> text{};
    const ssize_t count = pread(descriptor, text.data(), text.size(), 0);
    const char* const end = std::find(text.data(), text.data() + std::max<ssize_t>(count, 0), '\n');
    int process = 0;
    const auto [behind, problem] = std::from_chars(text.data(), end, process);
    const bool isNumber = problem == std::errc() && behind == end && process > 0;
    return isNumber ? "process " + std::to_string(process) : "another process";
}

}  // namespace

RecorderLock::RecorderLock(const DeviceFolder& device) {
    const std::string file = (device.Recording() / "recorder.lock").string();
    m_descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_descriptor < 0) {
        m_problem = file + " cannot be opened: " + std::strerror(errno);
    } else if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        m_problem = errno == EWOULDBLOCK
                        ? HolderIn(m_descriptor) + " is recording in " + device.Root().string() + " already"
                        : file + " cannot be locked: " + std::strerror(errno);
    } else {
        const std::string holder = std::to_string(getpid()) + '\n';
        std::ignore = ftruncate(m_descriptor, 0);
        std::ignore = pwrite(m_descriptor, holder.data(), holder.size(), 0);
    }
}

RecorderLock::~RecorderLock() {
    if (m_descriptor >= 0) close(m_descriptor);
}

bool IsLocked(const std::string& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    const bool isLocked = flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(descriptor);
    return isLocked;
}

bool IsAlive(int process) { return process > 0 && (kill(process, 0) == 0 || errno == EPERM); }

}  // namespace host
