// The bytes of a recorded log or of a receiver: a file, a device or standard input.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/stop_signals.h"

namespace host {

// Owns its descriptor. Bytes are handed over as they arrive: a slow stream is not held back to fill a buffer.
class Input {
 public:
    enum class Got { Bytes, End, Stopped, Error };

    // A path, or "-" for standard input. Problem() says what is wrong when it cannot be opened.
    explicit Input(const std::string& path);
    ~Input();
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    bool IsOpen() const { return m_descriptor >= 0; }
    const std::string& Problem() const { return m_problem; }
    const std::string& Name() const { return m_name; }

    // Waits for bytes or a stop. `bytes` is valid until the next call.
    Got Read(StopSignals& stop, std::string_view& bytes);

    std::uint64_t BytesRead() const { return m_bytesRead; }
    std::optional<std::uint64_t> Size() const;  // of a plain file

 private:
    std::string m_name;
    std::string m_problem;
    int m_descriptor = -1;
    std::uint64_t m_bytesRead = 0;
    std::array<char, 16384> m_buffer{};
};

}  // namespace host
