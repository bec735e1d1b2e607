// NMEA 0183 bytes as a source of fixes. The sentences: host/source/nmea_reader.h.
#pragma once

#include <deque>
#include <memory>

#include "host/source/byte_source.h"
#include "host/source/fix_source.h"
#include "host/source/nmea_reader.h"

namespace host {

class NmeaSource : public FixSource {
 public:
    explicit NmeaSource(std::unique_ptr<ByteSource> bytes);

    Got Next(StopSignals& stop, std::chrono::milliseconds atMost, Fix& fix) override;
    const std::string& Name() const override { return m_bytes->Name(); }
    std::string Problem() const override { return m_bytes->Problem(); }
    bool IsLive() const override { return m_bytes->IsLive(); }
    std::optional<double> Share() const override { return m_bytes->Share(); }
    SourceCounts Counts() const override;

 private:
    void Read(StopSignals& stop, std::chrono::milliseconds atMost);

    std::unique_ptr<ByteSource> m_bytes;
    NmeaReader m_reader;
    std::deque<Fix> m_fixes;   // read and not yet handed over
    std::optional<Got> m_end;  // why no more will come
};

// "45 no fix, 3 bad checksum"; empty when nothing was refused.
std::string RefusedByReason(const NmeaCounts& counts);

}  // namespace host
