// A GPX file replayed: the points of its first track as fixes. The file itself is not touched; the library
// reads a copy of it.
#pragma once

#include <vector>

#include "host/source/fix_source.h"

namespace host {

class GpxSource : public FixSource {
 public:
    // To be made before the library is told where the device lies: it reads from a folder of its own meanwhile.
    explicit GpxSource(const std::string& file);

    // Why there is nothing to replay; none when there is.
    const std::optional<std::string>& WhyUnreadable() const { return m_unreadable; }

    Got Next(StopSignals& stop, std::chrono::milliseconds atMost, Fix& fix) override;
    const std::string& Name() const override { return m_name; }
    bool IsLive() const override { return false; }
    std::optional<double> Share() const override;
    SourceCounts Counts() const override;

 private:
    std::string m_name;
    std::optional<std::string> m_unreadable;
    std::vector<TckPt> m_points;
    std::size_t m_next = 0;
    std::uint64_t m_fixes = 0, m_withoutTime = 0;
};

}  // namespace host
