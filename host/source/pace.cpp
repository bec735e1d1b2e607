#include "host/source/pace.h"

namespace host {

Pace::Clock::time_point Pace::DueTime(const TckPt& fix, Clock::time_point now) {
    if (!m_speed) return now;
    if (!m_last) m_due = now;
    const double step = static_cast<double>(fix.lTime) - m_last.value_or(fix.lTime);
    m_last = fix.lTime;
    if (step > 0 && step < kLongestStep)
        m_due += std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(step / *m_speed));
    return m_due;
}

}  // namespace host
