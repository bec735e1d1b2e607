// NMEA 0183 framing: cuts a stream of bytes into sentences and verifies their checksums.
// What a position sentence says: host/source/nmea_fields.h. Joining sentences into fixes:
// host/source/nmea_reader.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace host {

enum class Framing {
    Good,         // "$...*hh" with a checksum that agrees
    NoChecksum,   // a whole line without "*hh"
    BadChecksum,  // the checksum disagrees, or something follows it
    CutOff,       // ended by the next "$" or by the end of the input
    TooLong       // more than SentenceCutter::kLongest characters
};

struct Sentence {
    std::string_view body;  // between "$" and "*" when Good; valid during the call only
    Framing framing;
};

// Takes bytes in pieces of any size and hands over each sentence as soon as it has ended. Memory is bounded by
// one sentence, whatever arrives. LF, CR LF, CR and zero bytes end a line, so a log with a zero-filled tail is
// read up to it. A sentence behind other text (a time stamp, binary data of the receiver) is taken when its
// checksum is good; if it is not, the line counts as one that is no sentence.
class SentenceCutter {
 public:
    using Sink = std::function<void(const Sentence&)>;

    // The standard says 82; receivers and multiplexers do exceed it.
    static constexpr std::size_t kLongest = 512;

    explicit SentenceCutter(Sink sink) : m_sink(std::move(sink)) {}

    void Push(std::string_view bytes);

    // The end of the input: hands over a last sentence without line end.
    void Finish();

    // Lines, other than blank ones, that held no sentence.
    std::uint64_t OtherLines() const { return m_otherLines; }

 private:
    void Take(char c);
    void EndPiece(Framing withoutChecksum);
    void EndLine();
    void HandOver(std::string_view piece, Framing withoutChecksum);

    Sink m_sink;
    std::array<char, kLongest> m_piece{};  // the line so far, from its last "$" on
    std::size_t m_size = 0;
    bool m_tooLong = false;
    bool m_lineHasOtherText = false;
    bool m_lineHasGoodSentence = false;
    std::uint64_t m_otherLines = 0;
};

}  // namespace host
