// Ctrl-C, SIGTERM and SIGHUP as something to wait for, so that a recording ends between two fixes and is saved.
#pragma once

#include <chrono>
#include <memory>

namespace host {

enum class Awaited { Ready, TimeIsUp, Stop };

// While it lives, these signals do not end the program; make it before any other thread starts. Afterwards they
// do again. Signals that the caller ignores (nohup) stay ignored; SIGQUIT, which a terminal sends for Ctrl-\,
// ends the program at any time. Whoever reads our messages, or a daemon, may go away meanwhile: from here on
// that is an error of the write and ends nothing.
class StopSignals {
 public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Waits until `descriptor` can be read or has ended. Stop when a signal asks for it, at once and ever
    // after.
    Awaited WaitForInput(int descriptor, std::chrono::milliseconds atMost);
    // False when a signal asks to stop, at once and ever after. A time of 0 only looks.
    bool Sleep(std::chrono::milliseconds time);
    bool Requested() const { return m_requested; }

 private:
    struct Watch;  // one form a system: host/posix, host/windows

    std::unique_ptr<Watch> m_watch;
    bool m_requested = false;
};

}  // namespace host
