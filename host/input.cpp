#include "host/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace host {

Input::Input(const std::string& path) : m_name(path == "-" ? "standard input" : path) {
    m_descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (m_descriptor < 0) m_problem = std::strerror(errno);
}

Input::~Input() {
    if (m_descriptor > STDERR_FILENO) close(m_descriptor);
}

Input::Got Input::Read(StopSignals& stop, std::string_view& bytes) {
    if (!stop.WaitForInput(m_descriptor)) return Got::Stopped;
    const ssize_t count = read(m_descriptor, m_buffer.data(), m_buffer.size());
    if (count < 0) m_problem = std::strerror(errno);
    if (count <= 0) return count < 0 ? Got::Error : Got::End;
    m_bytesRead += static_cast<std::uint64_t>(count);
    bytes = {m_buffer.data(), static_cast<std::size_t>(count)};
    return Got::Bytes;
}

std::optional<std::uint64_t> Input::Size() const {
    struct stat about {};
    if (fstat(m_descriptor, &about) != 0 || !S_ISREG(about.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(about.st_size);
}

}  // namespace host
