// The bytes of a recorded log or of a stream: a file, a pipe or standard input.
#pragma once

#include <array>
#include <cstdint>

#include "host/source/byte_source.h"

namespace host {

// Owns its descriptor.
class Input : public ByteSource {
 public:
    // A path, or "-" for standard input. Problem() says what is wrong when it cannot be opened or is a folder.
    explicit Input(const std::string& path);
    ~Input() override;

    bool IsOpen() const { return m_descriptor >= 0; }

    Got Read(StopSignals& stop, std::chrono::milliseconds atMost, std::string_view& bytes) override;
    const std::string& Name() const override { return m_name; }
    const std::string& Problem() const override { return m_problem; }
    bool IsLive() const override { return !m_size; }
    std::optional<double> Share() const override;

 private:
    void Close();

    std::string m_name;
    std::string m_problem;
    int m_descriptor = -1;
    std::optional<std::uint64_t> m_size;  // of a plain file
    std::uint64_t m_bytesRead = 0;
    std::array<char, 16384> m_buffer{};
};

}  // namespace host
