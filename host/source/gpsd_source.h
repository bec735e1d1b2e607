// The GPS daemon as a source of fixes. A daemon that is not there, not yet or not any more, is waited for.
// The connection: host/source/gpsd_connection.h.
#pragma once

#include <memory>

#include "host/source/back_off.h"
#include "host/source/fix_source.h"
#include "host/source/gpsd_connection.h"

namespace host {

class GpsdSource : public FixSource {
 public:
    // `say` hears, once each time, that the daemon is gone and that it is back.
    GpsdSource(GpsdAddress address, Say say);

    Got Next(StopSignals& stop, std::chrono::milliseconds atMost, Fix& fix) override;
    const std::string& Name() const override { return m_name; }
    bool IsLive() const override { return true; }
    SourceCounts Counts() const override;

 private:
    Got WaitToConnect(StopSignals& stop, std::chrono::milliseconds atMost);
    Got Lose();
    Got Take(const gps_data_t& data, Fix& fix);

    GpsdAddress m_address;
    Say m_say;
    std::string m_name;
    std::unique_ptr<GpsdConnection> m_connection;
    bool m_isMissed = false;  // and the user was told
    BackOff m_backOff;
    std::chrono::steady_clock::time_point m_nextTry;
    std::optional<double> m_hdop;  // told apart from the fixes, now and then
    std::uint64_t m_reports = 0, m_fixes = 0, m_withoutFix = 0, m_bad = 0;
};

}  // namespace host
