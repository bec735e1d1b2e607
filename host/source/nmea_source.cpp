#include "host/source/nmea_source.h"

#include <utility>

#include "host/text/text.h"

namespace host {
namespace {

FixSource::Got EndOf(ByteSource::Got got) {
    switch (got) {
        case ByteSource::Got::Stopped:
            return FixSource::Got::Stopped;
        case ByteSource::Got::Error:
            return FixSource::Got::Error;
        default:
            return FixSource::Got::End;
    }
}

}  // namespace

NmeaSource::NmeaSource(std::unique_ptr<ByteSource> bytes)
    : m_bytes(std::move(bytes)), m_reader([this](const Fix& fix) { m_fixes.push_back(fix); }) {}

FixSource::Got NmeaSource::Next(StopSignals& stop, std::chrono::milliseconds atMost, Fix& fix) {
    if (m_fixes.empty() && !m_end) Read(stop, atMost);
    if (m_fixes.empty()) return m_end.value_or(Got::Nothing);
    fix = m_fixes.front();
    m_fixes.pop_front();
    return Got::Fix;
}

void NmeaSource::Read(StopSignals& stop, std::chrono::milliseconds atMost) {
    std::string_view bytes;
    const ByteSource::Got got = m_bytes->Read(stop, atMost, bytes);
    if (got == ByteSource::Got::Nothing) return;
    if (got == ByteSource::Got::Bytes) return m_reader.Push(bytes);
    m_reader.Finish();
    m_end = EndOf(got);
}

SourceCounts NmeaSource::Counts() const {
    const NmeaCounts counts = m_reader.Counts();
    return {counts.fixes, Counted(counts.sentences, "sentence", "sentences"), RefusedByReason(counts),
            counts.otherLines};
}

std::string RefusedByReason(const NmeaCounts& counts) {
    std::string text;
    for (std::size_t i = 0; i < kRefusals; ++i) {
        if (counts.refused[i] == 0) continue;
        if (!text.empty()) text += ", ";
        text += std::to_string(counts.refused[i]) + ' ' + NameOf(static_cast<Refusal>(i));
    }
    return text;
}

}  // namespace host
