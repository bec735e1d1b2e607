// The quality gate: refuses fixes that cannot be true, and says why. What receivers call no fix themselves is
// refused before, gate or not (host/source/fix_source.h).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "host/source/fix.h"

namespace host {

struct GateSettings {
    double maxHdop = 10;    // horizontal dilution of precision
    double maxSpeed = 150;  // [m/s] between one fix and the next
};

enum class GateReason { Hdop, NoPlace, TimeBack, TimeAhead, Speed };
constexpr std::size_t kGateReasons = 5;

struct GateCounts {
    std::array<std::uint64_t, kGateReasons> refused{};
    std::uint64_t mended = 0;    // by whole eras of the GPS week count
    std::uint64_t accepted = 0;  // that were refused at first sight, but agreed with several before them

    std::uint64_t Refused(GateReason why) const { return refused[static_cast<std::size_t>(why)]; }
};

// "3 HDOP above the limit, 1 time back"; empty when nothing was refused.
std::string RefusedByReason(const GateCounts& counts);

// A fix is measured against the last one that passed. A position that is none (0 0, or off the globe) never
// passes; everything else does once kAgreeing fixes in a row were refused that agree with each other: then it
// is the last one that was wrong, or the limit, and the recording goes on from the new place and time.
class Gate {
 public:
    static constexpr int kAgreeing = 5;
    static constexpr std::int64_t kEra =
        std::int64_t{1024} * 7 * 86400;          // [s] after which the week count restarts
    static constexpr std::int64_t kDay = 86400;  // [s]

    explicit Gate(const GateSettings& settings) : m_settings(settings) {}

    // The fix as it is to be recorded, or none. `now`: the system's clock [s since 1970], where it can be
    // trusted. A time that is behind by whole eras of the GPS week count is mended: when that brings it within
    // a day of the clock, or of the last fix.
    std::optional<Fix> Pass(Fix fix, std::optional<std::int64_t> now);

    const GateCounts& Counts() const { return m_counts; }

 private:
    void Mend(Fix& fix, std::optional<std::int64_t> now);
    std::optional<GateReason> WhyNot(const Fix& fix, std::optional<std::int64_t> now) const;
    std::optional<GateReason> WhyNotBehind(const Fix& last, const Fix& fix,
                                           std::optional<std::int64_t> now) const;
    bool AgreesWithRefused(const Fix& fix, std::optional<std::int64_t> now);
    Fix Accept(const Fix& fix, bool isHdopTrusted);

    GateSettings m_settings;
    std::optional<Fix> m_last;     // that passed
    std::optional<Fix> m_refused;  // the newest one, since then
    int m_agreeing = 0;            // refused in a row that agree
    bool m_isHdopTrusted = false;  // it is above the limit all the time
    bool m_isClockTrusted = true;  // until fixes that agree are far ahead of it
    GateCounts m_counts;
};

}  // namespace host
