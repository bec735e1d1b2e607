// Where fixes come from: an NMEA stream (host/source/nmea_source.h), the GPS daemon
// (host/source/gpsd_source.h), a GPX file (host/source/gpx_source.h). Which one it is:
// host/source/open_source.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "host/recording/stop_signals.h"
#include "host/source/fix.h"

namespace host {

// Tells the user something while fixes are read: a receiver that is gone, and that it is back.
using Say = std::function<void(const std::string&)>;

struct SourceCounts {
    std::uint64_t fixes = 0;       // handed over
    std::string from;              // "5746 sentences"
    std::string refused;           // by reason: "45 no fix, 3 bad checksum"; empty when nothing was
    std::uint64_t otherLines = 0;  // of a text: lines that are none of its sentences
};

class FixSource {
 public:
    enum class Got { Fix, Nothing, End, Stopped, Error };

    FixSource() = default;
    virtual ~FixSource() = default;
    FixSource(const FixSource&) = delete;
    FixSource& operator=(const FixSource&) = delete;

    // Waits for the next fix, but hardly longer than `atMost`: then there is Nothing, and the caller comes
    // again. After a stop, what was read before is still handed over.
    virtual Got Next(StopSignals& stop, std::chrono::milliseconds atMost, Fix& fix) = 0;

    virtual const std::string& Name() const = 0;
    virtual std::string Problem() const { return ""; }  // behind Error
    virtual bool IsLive() const = 0;  // a receiver at work; otherwise a file that can be read again
    virtual std::optional<double> Share() const { return std::nullopt; }  // of a file that is read, 0 to 1
    virtual SourceCounts Counts() const = 0;
};

}  // namespace host
