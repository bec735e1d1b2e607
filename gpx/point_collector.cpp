#include "gpx/point_collector.h"

#include <algorithm>
#include <utility>

gpx::Points gpx::PointCollector::Take() {
    if (m_points.capacity() / 2 > m_points.size())
        m_points.shrink_to_fit();  // the text did not go on like that
    return std::move(m_points);
}

// A file that has grown since its size was asked for may end further on.
void gpx::PointCollector::MakeRoom(std::uint64_t at) {
    constexpr std::size_t kAtLeast = 64;
    const std::size_t size = m_points.size();
    if (size == 0) m_firstEnd = at;
    const std::uint64_t read = at - m_firstEnd;  // by now `size` points end within it
    const std::uint64_t rest = std::max(m_textSize, at) - at;
    const auto expected = static_cast<std::size_t>(size == 0 ? 0 : size * rest / read);
    m_points.reserve(size + std::max({kAtLeast, size / 4, expected + expected / 64}));
}
