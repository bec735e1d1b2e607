#include "host/source/nmea_reader.h"

#include <numeric>
#include <utility>

#include "host/tracks/storable_altitude.h"

namespace host {
namespace {

Refusal RefusalOf(Framing framing) {
    switch (framing) {
        case Framing::NoChecksum:
            return Refusal::NoChecksum;
        case Framing::TooLong:
            return Refusal::TooLong;
        case Framing::CutOff:
            return Refusal::CutOff;
        default:
            return Refusal::BadChecksum;
    }
}

Refusal RefusalOf(Reading reading) {
    switch (reading) {
        case Reading::NoFix:
            return Refusal::NoFix;
        case Reading::NoDate:
            return Refusal::NoDate;
        default:
            return Refusal::BadField;
    }
}

// The address "ttXXX": two letters for the talker, three for the sentence. "P" begins the proprietary ones.
bool IsAddressed(std::string_view body, std::string_view kind) {
    const std::string_view address = body.substr(0, body.find(','));
    return address.size() == 5 && address[0] != 'P' && address.ends_with(kind);
}

}  // namespace

const char* NameOf(Refusal refusal) {
    constexpr std::array<const char*, kRefusals> kNames = {"no checksum", "bad checksum",   "cut off",
                                                           "too long",    "bad field",      "no fix",
                                                           "no date",     "GGA without RMC"};
    return kNames[static_cast<std::size_t>(refusal)];
}

std::uint64_t NmeaCounts::Refused() const {
    return std::accumulate(refused.begin(), refused.end(), std::uint64_t{0});
}

NmeaReader::NmeaReader(Sink sink)
    : m_sink(std::move(sink)), m_cutter([this](const Sentence& sentence) { OnSentence(sentence); }) {}

NmeaCounts NmeaReader::Counts() const {
    NmeaCounts counts = m_counts;
    counts.otherLines = m_cutter.OtherLines();
    return counts;
}

void NmeaReader::Finish() {
    m_cutter.Finish();
    HandOverWaitingRmc();
    DropWaitingGga();
}

void NmeaReader::OnSentence(const Sentence& sentence) {
    ++m_counts.sentences;
    if (sentence.framing != Framing::Good) return Refuse(RefusalOf(sentence.framing));
    if (IsAddressed(sentence.body, "RMC")) return OnRmc(sentence.body);
    if (IsAddressed(sentence.body, "GGA")) return OnGga(sentence.body);
    ++m_counts.others;
}

void NmeaReader::OnRmc(std::string_view body) {
    HandOverWaitingRmc();
    Rmc rmc;
    if (!IsGood(ReadRmc(body, rmc))) return;
    if (m_waitingGga && m_waitingGga->timeOfDay == rmc.timeOfDay)
        return HandOver(rmc, *std::exchange(m_waitingGga, std::nullopt));
    DropWaitingGga();
    m_waitingRmc = rmc;
}

void NmeaReader::OnGga(std::string_view body) {
    Gga gga;
    if (!IsGood(ReadGga(body, gga))) return;
    if (m_waitingRmc && m_waitingRmc->timeOfDay == gga.timeOfDay)
        return HandOver(*std::exchange(m_waitingRmc, std::nullopt), gga);
    HandOverWaitingRmc();
    DropWaitingGga();
    m_waitingGga = gga;
}

bool NmeaReader::IsGood(Reading reading) {
    if (reading != Reading::Good) Refuse(RefusalOf(reading));
    return reading == Reading::Good;
}

void NmeaReader::HandOver(const Rmc& rmc, const Gga& gga) {
    Fix fix{rmc.fix, gga.hdop};
    if (gga.altitude) fix.dAltitude = MeasuredAltitude(*gga.altitude);
    ++m_counts.fixes;
    m_sink(fix);
}

void NmeaReader::HandOverWaitingRmc() {
    if (m_waitingRmc) HandOver(*std::exchange(m_waitingRmc, std::nullopt), {});
}

void NmeaReader::DropWaitingGga() {
    if (std::exchange(m_waitingGga, std::nullopt)) Refuse(Refusal::UnpairedGga);
}

}  // namespace host
