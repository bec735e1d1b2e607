#include "host/text/xml_reader.h"

#include <algorithm>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

#include "host/text/xml_encoding.h"
#include "host/text/xml_parser.h"

namespace host {
namespace {

constexpr std::size_t kPiece = 65536;

const char* CompressedAs(std::string_view beginning) {
    using namespace std::string_view_literals;
    for (const auto& [magic, name] :
         {std::pair("\x1f\x8b"sv, "gzip"), std::pair("PK\x03\x04"sv, "zip"), std::pair("BZh"sv, "bzip2"),
          std::pair("\xfd"
                    "7zXZ"sv,
                    "xz"),
          std::pair("\x28\xb5\x2f\xfd"sv, "zstd")})
        if (beginning.starts_with(magic)) return name;
    return nullptr;
}

// Blank lines in front of the declaration are forbidden, and common.
std::size_t BlanksInFront(std::string_view beginning) {
    return std::min(beginning.find_first_not_of(" \t\r\n"), beginning.size());
}

XmlOutcome Problem(const std::string& problem) { return {problem, 0, 0}; }

}  // namespace

const char* XmlAttributes::Find(std::string_view localName) const {
    for (const char** pair = m_pairs; *pair != nullptr; pair += 2)
        if (LocalName(*pair) == localName) return pair[1];
    return nullptr;
}

std::string_view LocalName(std::string_view name) { return name.substr(name.rfind(':') + 1); }

XmlBytes::XmlBytes(FileReader& file, std::vector<char>& piece, std::size_t size)
    : m_file(file), m_piece(piece), m_size(size), m_at(BlanksInFront({piece.data(), size})) {
    m_isUtf8 = host::IsUtf8(Beginning());
    m_encoding = EncodingAgainstDeclaration(Beginning());
    m_linesSkipped = static_cast<std::uint64_t>(
        std::count(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(m_at), '\n'));
}

std::string_view XmlBytes::Next(bool& isLast) {
    if (!std::exchange(m_isFirst, false)) Refill();
    isLast = m_size < m_piece.size();
    const std::size_t begin = m_at;
    m_at = m_size;
    if (m_isUtf8) m_at = begin + MendUtf8(m_piece.data() + begin, m_size - begin, isLast, m_replacedBytes);
    return {m_piece.data() + begin, m_at - begin};
}

// Behind what was held back, the beginning of a character.
void XmlBytes::Refill() {
    const std::size_t heldBack = m_size - m_at;
    std::memmove(m_piece.data(), m_piece.data() + m_at, heldBack);
    m_size = heldBack + m_file.Read(m_piece.data() + heldBack, m_piece.size() - heldBack);
    m_at = 0;
}

XmlOutcome ReadXml(FileReader& file, XmlEvents& events) {
    std::vector<char> piece(kPiece);
    const std::size_t size = file.Read(piece.data(), piece.size());
    if (!file.Problem().empty()) return Problem(file.Problem());
    if (size == 0) return Problem("it is empty");
    if (const char* form = CompressedAs({piece.data(), size}))
        return Problem(std::string("it is compressed (") + form + "); unpack it first");
    XmlBytes bytes(file, piece, size);
    XmlOutcome outcome = ParseXml(bytes, events);
    if (!file.Problem().empty()) return Problem("it cannot be read on: " + file.Problem());
    if (outcome.line != 0) outcome.line += bytes.LinesSkipped();
    outcome.replacedBytes = bytes.ReplacedBytes();
    return outcome;
}

}  // namespace host
