#include "host/source/gpsd_source.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "host/text/text.h"
#include "host/tracks/storable_altitude.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

double OrZero(double value) { return std::isfinite(value) ? value : 0.0; }

bool IsUsable(const gps_fix_t& fix) {
    return fix.time.tv_sec > 0 && fix.time.tv_sec <= std::numeric_limits<std::int32_t>::max() &&
           std::isfinite(fix.latitude) && std::isfinite(fix.longitude) && std::fabs(fix.latitude) <= 90 &&
           std::fabs(fix.longitude) <= 180;
}

TckPt PointOf(const gps_fix_t& fix) {
    TckPt point{};
    point.dLatitude = fix.latitude;
    point.dLongitude = fix.longitude;
    if (fix.mode >= MODE_3D && std::isfinite(fix.altMSL)) point.dAltitude = MeasuredAltitude(fix.altMSL);
    point.dSpeed = OrZero(fix.speed);
    point.lTime = static_cast<std::int32_t>(fix.time.tv_sec);
    point.fCourse = static_cast<float>(OrZero(fix.track));
    return point;
}

}  // namespace

GpsdSource::GpsdSource(GpsdAddress address, Say say)
    : m_address(std::move(address)), m_say(std::move(say)), m_name("gpsd at " + m_address.Text()) {}

FixSource::Got GpsdSource::Next(StopSignals& stop, milliseconds atMost, Fix& fix) {
    if (!m_connection) return WaitToConnect(stop, atMost);
    switch (m_connection->Read(stop, atMost)) {
        case GpsdConnection::Got::Stopped:
            return Got::Stopped;
        case GpsdConnection::Got::Lost:
            return Lose();
        case GpsdConnection::Got::Report:
            return Take(m_connection->Data(), fix);
        default:
            return Got::Nothing;
    }
}

FixSource::Got GpsdSource::WaitToConnect(StopSignals& stop, milliseconds atMost) {
    const auto left = std::chrono::ceil<milliseconds>(m_nextTry - steady_clock::now());
    if (!stop.Sleep(std::clamp(left, milliseconds(0), atMost))) return Got::Stopped;
    if (steady_clock::now() >= m_nextTry) m_connection = std::make_unique<GpsdConnection>(m_address);
    return Got::Nothing;
}

FixSource::Got GpsdSource::Lose() {
    if (!std::exchange(m_isMissed, true))
        m_say(m_name + " is not there (" + m_connection->Problem() + "); waiting for it");
    m_connection.reset();
    m_hdop.reset();
    m_nextTry = steady_clock::now() + m_backOff.Next();
    return Got::Nothing;
}

FixSource::Got GpsdSource::Take(const gps_data_t& data, Fix& fix) {
    // Only a report shows that it is back: something may take the call and hang up at once.
    if (std::exchange(m_isMissed, false)) m_say(m_name + " is back");
    m_backOff.Reset();
    if ((data.set & SATELLITE_SET) != 0 && std::isfinite(data.dop.hdop)) m_hdop = data.dop.hdop;
    if ((data.set & MODE_SET) == 0) return Got::Nothing;
    ++m_reports;
    if (data.fix.mode < MODE_2D) {
        ++m_withoutFix;
        return Got::Nothing;
    }
    if (!IsUsable(data.fix)) {
        ++m_bad;
        return Got::Nothing;
    }
    ++m_fixes;
    fix = Fix{PointOf(data.fix), m_hdop};
    return Got::Fix;
}

SourceCounts GpsdSource::Counts() const {
    std::string refused = m_withoutFix == 0 ? "" : std::to_string(m_withoutFix) + " no fix";
    if (m_bad != 0) refused += (refused.empty() ? "" : ", ") + std::to_string(m_bad) + " without time or place";
    return {m_fixes, Counted(m_reports, "report", "reports"), refused, 0};
}

}  // namespace host
