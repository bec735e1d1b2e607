// How long to wait before something that failed is tried again: soon at first, then less and less often.
#pragma once

#include <algorithm>
#include <chrono>

namespace host {

class BackOff {
 public:
    static constexpr std::chrono::milliseconds kFirst{200}, kLongest{30'000};

    std::chrono::milliseconds Next() {
        const auto pause = m_next;
        m_next = std::min(2 * m_next, kLongest);
        return pause;
    }
    void Reset() { m_next = kFirst; }

 private:
    std::chrono::milliseconds m_next = kFirst;
};

}  // namespace host
