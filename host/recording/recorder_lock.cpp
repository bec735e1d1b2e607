#include "host/recording/recorder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <tuple>

namespace host {
namespace {

// The holder's process id as the file tells it, without line end.
std::string HolderIn(int descriptor) {
    std::array<char, 32> text{};
    const ssize_t count = pread(descriptor, text.data(), text.size(), 0);
    const std::string holder(text.data(), static_cast<std::size_t>(count < 0 ? 0 : count));
    return holder.substr(0, holder.find('\n'));
}

}  // namespace

RecorderLock::RecorderLock(const DeviceFolder& device) {
    const std::string file = (device.Recording() / "recorder.lock").string();
    m_descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_descriptor < 0) {
        m_problem = file + " cannot be opened: " + std::strerror(errno);
    } else if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        m_problem = errno == EWOULDBLOCK ? "process " + HolderIn(m_descriptor) + " is recording in " +
                                               device.Root().string() + " already"
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

}  // namespace host
