// Turns an NMEA 0183 stream into fixes: each valid RMC gives one, with the altitude and the
// dilution of precision of the GGA of the same time. Framing: host/source/nmea_sentence.h. Fields:
// host/source/nmea_fields.h.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "host/source/fix.h"
#include "host/source/nmea_fields.h"
#include "host/source/nmea_sentence.h"
#include "qtrace.h"

namespace host {

// Why a sentence gave nothing.
enum class Refusal { NoChecksum, BadChecksum, CutOff, TooLong, BadField, NoFix, NoDate, UnpairedGga };
constexpr std::size_t kRefusals = 8;

// For the user: "bad checksum".
const char* NameOf(Refusal refusal);

struct NmeaCounts {
    std::uint64_t sentences = 0;   // everything that begins with "$"
    std::uint64_t others = 0;      // of these, good ones that are neither RMC nor GGA
    std::uint64_t fixes = 0;       // handed over
    std::uint64_t otherLines = 0;  // lines that are no sentence; blank ones do not count
    std::array<std::uint64_t, kRefusals> refused{};

    std::uint64_t Refused(Refusal why) const { return refused[static_cast<std::size_t>(why)]; }
    std::uint64_t Refused() const;
};

// Sentences of any talker are taken. RMC and GGA of one time are joined in whichever order they come; an RMC
// whose GGA has not come when the next time begins is handed over without altitude. A GGA alone knows neither
// date nor speed: it is refused. Several fixes within a second are all handed over; times that go back are the
// recording's business.
class NmeaReader {
 public:
    using Sink = std::function<void(const Fix&)>;

    explicit NmeaReader(Sink sink);
    NmeaReader(const NmeaReader&) = delete;
    NmeaReader& operator=(const NmeaReader&) = delete;

    // Bytes in pieces of any size. The sink is called within, as soon as a fix is complete.
    void Push(std::string_view bytes) { m_cutter.Push(bytes); }

    // The end of the input: hands over the fix that is still waiting for its altitude.
    void Finish();

    NmeaCounts Counts() const;

 private:
    void OnSentence(const Sentence& sentence);
    void OnRmc(std::string_view body);
    void OnGga(std::string_view body);
    bool IsGood(Reading reading);
    void Refuse(Refusal why) { ++m_counts.refused[static_cast<std::size_t>(why)]; }
    void HandOver(const Rmc& rmc, const Gga& gga);
    void HandOverWaitingRmc();
    void DropWaitingGga();

    Sink m_sink;
    SentenceCutter m_cutter;
    std::optional<Rmc> m_waitingRmc;  // at most one of the two waits for the other
    std::optional<Gga> m_waitingGga;
    NmeaCounts m_counts;
};

}  // namespace host
