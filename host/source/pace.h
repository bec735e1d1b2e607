// Replays a log in the time that it took, or so many times faster.
#pragma once

#include <chrono>
#include <optional>

#include "qtrace.h"

namespace host {

class Pace {
 public:
    using Clock = std::chrono::steady_clock;

    // `speed`: 2 is twice as fast as it was; none: as fast as it goes.
    explicit Pace(std::optional<double> speed) : m_speed(speed) {}

    // When this fix, the one behind the last that was asked for, is due. A step back, and a gap that begins a
    // new trip, take no time: nobody waits through a night.
    Clock::time_point DueTime(const TckPt& fix, Clock::time_point now);

 private:
    static constexpr double kLongestStep = CTrackEx::s_iDiffTime;  // [s]

    std::optional<double> m_speed;
    std::optional<std::int32_t> m_last;  // [s since 1970]
    Clock::time_point m_due;
};

}  // namespace host
