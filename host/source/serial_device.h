// A receiver on a serial line. It may be pulled out and put back: the line is opened again, and nothing that
// was read before is lost.
#pragma once

#include <sys/types.h>
#include <termios.h>

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "host/source/back_off.h"
#include "host/source/byte_source.h"
#include "host/source/fix_source.h"

namespace host {

// The line is made raw, at the speed that it has or at `baud`, and gets its settings back when it is closed.
class SerialDevice : public ByteSource {
 public:
    // `say` hears, once each time, that the device is gone and that it is back.
    SerialDevice(std::string path, std::optional<int> baud, Say say);
    ~SerialDevice() override;

    // Tried once at the start: a device that is there and may not be read is no matter of waiting.
    std::optional<std::string> OpenFirst();

    Got Read(StopSignals& stop, std::chrono::milliseconds atMost, std::string_view& bytes) override;
    const std::string& Name() const override { return m_path; }
    const std::string& Problem() const override { return m_problem; }
    bool IsLive() const override { return true; }

 private:
    bool Open();
    bool MakeRaw();
    void Close();
    void Lose(const std::string& why);
    Got WaitToReopen(StopSignals& stop, std::chrono::milliseconds atMost);

    std::string m_path;
    std::optional<int> m_baud;
    Say m_say;
    std::string m_problem;
    int m_descriptor = -1;
    termios m_before{};
    bool m_isMissed = false;  // and the user was told
    BackOff m_backOff;
    std::chrono::steady_clock::time_point m_nextTry;
    std::array<char, 4096> m_buffer{};
};

}  // namespace host
