// Ctrl-C, SIGTERM and SIGHUP as something to wait for, so that a recording ends between two fixes and is saved.
#pragma once

#include <csignal>

namespace host {

// While it lives, these signals do not end the program; make it before any other thread starts. Afterwards they
// do again: a second Ctrl-C ends a save that hangs. Signals that the caller ignores (nohup) stay ignored.
class StopSignals {
 public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Waits until `descriptor` can be read or has ended. False when a signal asks to stop, at once and ever
    // after.
    bool WaitForInput(int descriptor);
    bool Requested() const { return m_requested; }

 private:
    sigset_t m_before{};
    int m_signals = -1;
    bool m_requested = false;
};

}  // namespace host
