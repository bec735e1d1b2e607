// Which points count as recent, by the clock. Inner to the library.
#pragma once

#include <cstdint>

#include "platform/clock.h"
#include "track/point.h"
#include "util/time.h"

// Tells the points that were at most `seconds` old when it was made, by the UTC clock; points from the future
// are among them.
class RecentPoints {
 public:
    explicit RecentPoints(int seconds) : m_now(Now()), m_seconds(seconds) {}

    bool Contains(const TckPt& point) const { return m_now - point.lTime <= m_seconds; }

 private:
    static std::int32_t Now() {
        SYSTEMTIME now;
        platform::GetSystemTime(&now);
        return static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(now));
    }

    double m_now;  // [s] a double: differences of times may exceed 32 bits
    double m_seconds;
};
