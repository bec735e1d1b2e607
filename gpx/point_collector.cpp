#include "gpx/point_collector.h"

#include <algorithm>
#include <utility>

void gpx::PointCollector::Add(const TckPt& point, const char* at) {
    if (m_points.size() == m_points.capacity()) MakeRoom(at);
    m_points.push_back(point);
}

gpx::Points gpx::PointCollector::Take() {
    if (m_points.capacity() / 2 > m_points.size())
        m_points.shrink_to_fit();  // the text did not go on like that
    return std::move(m_points);
}

void gpx::PointCollector::MakeRoom(const char* at) {
    constexpr std::size_t kAtLeast = 64;
    const std::size_t size = m_points.size();
    if (size == 0) m_firstEnd = at;
    const auto read = static_cast<std::size_t>(at - m_firstEnd);  // by now `size` points end within it
    const auto rest = static_cast<std::size_t>(m_textEnd - at);
    const std::size_t expected = size == 0 ? 0 : size * rest / read;
    m_points.reserve(size + std::max({kAtLeast, size / 4, expected + expected / 64}));
}
