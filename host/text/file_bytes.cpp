#include "host/text/file_bytes.h"

#include <array>
#include <cerrno>
#include <cstring>

#include "host/text/descriptor.h"

namespace host {
namespace {

constexpr int kStandardInput = 0;

}  // namespace

FileReader::FileReader(const std::string& path) {
    m_descriptor = path == "-" ? kStandardInput : OpenToRead(path);
    if (m_descriptor < 0) m_problem = std::strerror(errno);
}

FileReader::~FileReader() {
    if (m_descriptor > kStandardInput) CloseFile(m_descriptor);
}

std::size_t FileReader::Read(char* buffer, std::size_t size) {
    std::size_t filled = 0;
    while (m_problem.empty() && filled < size) {
        const std::ptrdiff_t count = ReadSome(m_descriptor, buffer + filled, size - filled);
        if (count == 0) break;
        if (count > 0)
            filled += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            m_problem = std::strerror(errno);
    }
    return filled;
}

FileBytes ReadWholeFile(const std::string& path, std::uint64_t limit) {
    FileReader file(path);
    FileBytes whole;
    std::array<char, 65536> piece{};
    for (std::size_t n; (n = file.Read(piece.data(), piece.size())) > 0 && whole.bytes.size() <= limit;)
        whole.bytes.append(piece.data(), n);
    whole.problem = file.Problem();
    if (whole.bytes.size() > limit) whole.problem = "larger than " + std::to_string(limit) + " bytes";
    return whole;
}

}  // namespace host
