// A connection to the GPS daemon through its client library: made on a thread of its own, since a name or a
// host that does not answer can take minutes, and then read report by report. When it is tried again:
// host/source/gpsd_source.h.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <gps.h>

#include "host/recording/stop_signals.h"

namespace host {

// "HOST", "HOST:PORT", ":PORT", "[2001:db8::1]:PORT"; what is missing is localhost and 2947.
struct GpsdAddress {
    std::string host = "localhost", port = "2947";

    static GpsdAddress From(const std::string& text);
    std::string Text() const { return host + ':' + port; }
};

class GpsdConnection {
 public:
    enum class Got { Report, Nothing, Stopped, Lost };

    explicit GpsdConnection(const GpsdAddress& address);
    ~GpsdConnection();  // at once: an attempt that is still under way ends by itself
    GpsdConnection(const GpsdConnection&) = delete;
    GpsdConnection& operator=(const GpsdConnection&) = delete;

    // Waits for the connection, or then for the next report of any kind.
    Got Read(StopSignals& stop, std::chrono::milliseconds atMost);

    const gps_data_t& Data() const;                           // behind Report; Data().set says what came
    const std::string& Problem() const { return m_problem; }  // behind Lost

 private:
    struct Attempt;

    Got AwaitOpen(StopSignals& stop, std::chrono::milliseconds atMost);
    bool Watch();

    std::shared_ptr<Attempt> m_attempt;  // shared with its thread
    bool m_isOpen = false;
    std::string m_problem;
};

}  // namespace host
