#include "host/source/input.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "host/text/descriptor.h"

namespace host {
namespace {

constexpr int kStandardInput = 0;

}  // namespace

Input::Input(const std::string& path) : m_name(path == "-" ? "standard input" : path) {
    m_descriptor = path == "-" ? kStandardInput : OpenToRead(path);
    struct stat about {};
    if (m_descriptor < 0 || fstat(m_descriptor, &about) != 0) {
        m_problem = std::strerror(errno);
        Close();
    } else if (S_ISDIR(about.st_mode)) {
        m_problem = std::strerror(EISDIR);
        Close();
    } else if (S_ISREG(about.st_mode)) {
        m_size = static_cast<std::uint64_t>(about.st_size);
    }
}

Input::~Input() { Close(); }

void Input::Close() {
    if (m_descriptor > kStandardInput) CloseFile(m_descriptor);
    m_descriptor = -1;
}

Input::Got Input::Read(StopSignals& stop, std::chrono::milliseconds atMost, std::string_view& bytes) {
    const Awaited awaited = stop.WaitForInput(m_descriptor, atMost);
    if (awaited == Awaited::Stop) return Got::Stopped;
    if (awaited == Awaited::TimeIsUp) return Got::Nothing;
    const std::ptrdiff_t count = ReadSome(m_descriptor, m_buffer.data(), m_buffer.size());
    if (count < 0) m_problem = std::strerror(errno);
    if (count <= 0) return count < 0 ? Got::Error : Got::End;
    m_bytesRead += static_cast<std::uint64_t>(count);
    bytes = {m_buffer.data(), static_cast<std::size_t>(count)};
    return Got::Bytes;
}

std::optional<double> Input::Share() const {
    if (!m_size || *m_size == 0) return std::nullopt;
    return std::min(1.0, static_cast<double>(m_bytesRead) / static_cast<double>(*m_size));
}

}  // namespace host
