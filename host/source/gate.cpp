#include "host/source/gate.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {
namespace {

bool IsPlace(const TckPt& fix) {
    const bool isOnGlobe = std::fabs(fix.dLatitude) <= 90 && std::fabs(fix.dLongitude) <= 180;
    return isOnGlobe && (fix.dLatitude != 0 || fix.dLongitude != 0);
}

double Metres(const TckPt& from, const TckPt& to) {
    double distance = 0, bearing = 0;
    CalDistance(from.dLatitude, from.dLongitude, to.dLatitude, to.dLongitude, 0, &distance, &bearing);
    return distance;
}

// Eras to add to bring `time` within a day of `reference`, or none. A receiver whose count has restarted is
// behind, never ahead: where the fix is ahead by eras, the reference is what was wrong.
std::optional<std::int64_t> ErasMissing(std::int64_t time, std::int64_t reference) {
    const std::int64_t behind = reference - time;
    const std::int64_t eras = (behind + Gate::kEra / 2) / Gate::kEra;
    if (eras <= 0 || std::abs(behind - eras * Gate::kEra) > Gate::kDay) return std::nullopt;
    return eras;
}

}  // namespace

std::string RefusedByReason(const GateCounts& counts) {
    constexpr std::array<const char*, kGateReasons> kNames = {
        "HDOP above the limit", "no position", "time back", "time far ahead", "speed above the limit"};
    std::string text;
    for (std::size_t i = 0; i < kGateReasons; ++i) {
        if (counts.refused[i] == 0) continue;
        text += (text.empty() ? "" : ", ") + std::to_string(counts.refused[i]) + ' ' + kNames[i];
    }
    return text;
}

std::optional<Fix> Gate::Pass(Fix fix, std::optional<std::int64_t> now) {
    Mend(fix, now);
    const auto reason = WhyNot(fix, now);
    if (!reason) return Accept(fix, m_isHdopTrusted && fix.hdop > m_settings.maxHdop);
    if (*reason != GateReason::NoPlace && AgreesWithRefused(fix, now)) {
        ++m_counts.accepted;
        m_isClockTrusted = !(now && fix.lTime > *now + kDay);
        return Accept(fix, *reason == GateReason::Hdop);
    }
    ++m_counts.refused[static_cast<std::size_t>(*reason)];
    return std::nullopt;
}

Fix Gate::Accept(const Fix& fix, bool isHdopTrusted) {
    m_isHdopTrusted = isHdopTrusted;
    m_last = fix;
    m_refused.reset();
    m_agreeing = 0;
    return fix;
}

void Gate::Mend(Fix& fix, std::optional<std::int64_t> now) {
    std::optional<std::int64_t> eras = now ? ErasMissing(fix.lTime, *now) : std::nullopt;
    if (!eras && m_last) eras = ErasMissing(fix.lTime, m_last->lTime);
    if (!eras) return;
    const std::int64_t time = fix.lTime + *eras * kEra;
    if (time <= 0 || time > std::numeric_limits<std::int32_t>::max()) return;
    fix.lTime = static_cast<std::int32_t>(time);
    ++m_counts.mended;
}

std::optional<GateReason> Gate::WhyNot(const Fix& fix, std::optional<std::int64_t> now) const {
    if (!IsPlace(fix)) return GateReason::NoPlace;
    if (!m_isHdopTrusted && fix.hdop > m_settings.maxHdop) return GateReason::Hdop;
    if (m_isClockTrusted && now && fix.lTime > *now + kDay) return GateReason::TimeAhead;
    return m_last ? WhyNotBehind(*m_last, fix, now) : std::nullopt;
}

// Times are whole seconds: within one of them the way may take that second.
// After a pause of days the clock, where it can be trusted, says that the time is right.
std::optional<GateReason> Gate::WhyNotBehind(const Fix& last, const Fix& fix,
                                             std::optional<std::int64_t> now) const {
    const double seconds = static_cast<double>(fix.lTime) - last.lTime;
    if (seconds < 0) return GateReason::TimeBack;
    const bool isOfToday = now && std::abs(fix.lTime - *now) <= kDay;
    if (seconds > kDay && !isOfToday) return GateReason::TimeAhead;
    if (Metres(last, fix) > m_settings.maxSpeed * std::max(seconds, 1.0)) return GateReason::Speed;
    return std::nullopt;
}

// Counts this one in. The fix that makes the number full is the first that passes.
bool Gate::AgreesWithRefused(const Fix& fix, std::optional<std::int64_t> now) {
    const bool agrees = m_refused && !WhyNotBehind(*m_refused, fix, now);
    m_agreeing = agrees ? m_agreeing + 1 : 1;
    m_refused = fix;
    return m_agreeing >= kAgreeing;
}

}  // namespace host
