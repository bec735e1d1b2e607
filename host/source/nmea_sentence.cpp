#include "host/source/nmea_sentence.h"

#include <charconv>

namespace host {
namespace {

unsigned ChecksumOf(std::string_view body) {
    unsigned sum = 0;
    for (const char c : body) sum ^= static_cast<unsigned char>(c);
    return sum;
}

// `text` is a sentence from its "$" on. `withoutChecksum`: what the lack of "*" means here.
Framing Judge(std::string_view text, std::size_t star, Framing withoutChecksum) {
    if (star == std::string_view::npos) return withoutChecksum;
    const std::string_view digits = text.substr(star + 1);
    if (digits.size() < 2) return Framing::CutOff;
    unsigned stated = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), stated, 16);
    const bool read = error == std::errc() && end == digits.end() && digits.size() == 2;
    return read && stated == ChecksumOf(text.substr(1, star - 1)) ? Framing::Good : Framing::BadChecksum;
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
    const std::size_t last = text.find_last_not_of(" \t");
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace

void SentenceCutter::Push(std::string_view bytes) {
    for (const char c : bytes) Take(c);
}

void SentenceCutter::Take(char c) {
    if (c == '\n' || c == '\r' || c == '\0') return EndLine();
    if (c == '$') EndPiece(Framing::CutOff);
    if (m_size < kLongest)
        m_piece[m_size++] = c;
    else
        m_tooLong = true;
}

void SentenceCutter::Finish() {
    EndPiece(Framing::CutOff);
    EndLine();
}

void SentenceCutter::EndLine() {
    EndPiece(Framing::NoChecksum);
    if (m_lineHasOtherText && !m_lineHasGoodSentence) ++m_otherLines;
    m_lineHasOtherText = m_lineHasGoodSentence = false;
}

void SentenceCutter::EndPiece(Framing withoutChecksum) {
    const std::string_view piece = WithoutTrailingBlanks({m_piece.data(), m_size});
    if (!piece.empty()) HandOver(piece, m_tooLong ? Framing::TooLong : withoutChecksum);
    m_size = 0;
    m_tooLong = false;
}

void SentenceCutter::HandOver(std::string_view piece, Framing withoutChecksum) {
    if (piece.front() != '$') {
        m_lineHasOtherText = true;
        return;
    }
    const std::size_t star = piece.rfind('*');
    const Framing framing =
        withoutChecksum == Framing::TooLong ? Framing::TooLong : Judge(piece, star, withoutChecksum);
    if (framing == Framing::Good)
        m_lineHasGoodSentence = true;
    else if (m_lineHasOtherText)
        return;
    m_sink({piece.substr(1, framing == Framing::Good ? star - 1 : piece.size()), framing});
}

}  // namespace host
