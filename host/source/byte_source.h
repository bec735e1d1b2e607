// The bytes of a receiver or of its log. A file, a pipe, standard input: host/source/input.h. A serial device
// that may go and come back: host/source/serial_device.h.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "host/recording/stop_signals.h"

namespace host {

class ByteSource {
 public:
    enum class Got { Bytes, Nothing, End, Stopped, Error };

    ByteSource() = default;
    virtual ~ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    // Waits for bytes, but hardly longer than `atMost`: then there is Nothing. They are handed over as they
    // arrive: a slow stream is not held back to fill a buffer. `bytes` is valid until the next call.
    virtual Got Read(StopSignals& stop, std::chrono::milliseconds atMost, std::string_view& bytes) = 0;

    virtual const std::string& Name() const = 0;
    virtual const std::string& Problem() const = 0;  // behind Error
    virtual bool IsLive() const = 0;                 // a receiver at work; otherwise a file
    virtual std::optional<double> Share() const { return std::nullopt; }  // of a file that is read, 0 to 1
};

}  // namespace host
