#include "gpx/xml_scanner.h"

#include <array>
#include <cstring>
#include <rapidxml/rapidxml.hpp>

namespace {

using CharacterSet = std::array<bool, 256>;

constexpr CharacterSet AllBut(std::string_view excluded) {
    CharacterSet set{};
    set.fill(true);
    for (const char c : excluded) set[static_cast<unsigned char>(c)] = false;
    return set;
}

constexpr CharacterSet kOfName = AllBut(std::string_view(" \n\r\t/>?\0", 8));
constexpr CharacterSet kOfAttributeName = AllBut(std::string_view(" \n\r\t/<>=?!\0", 11));

constexpr bool IsIn(const CharacterSet& set, char c) { return set[static_cast<unsigned char>(c)]; }
constexpr bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

[[noreturn]] void Fail(char* where) { throw rapidxml::parse_error("unexpected markup", where); }

bool StartsWith(const char* text, std::string_view start) {
    return std::strncmp(text, start.data(), start.size()) == 0;
}

}  // namespace

Markup XmlScanner::Next() {
    auto* begin = static_cast<char*>(std::memchr(m_at, '<', static_cast<std::size_t>(m_end - m_at)));
    if (begin == nullptr) return {MarkupKind::None, m_end, m_end, {}};
    m_at = begin + 1;
    if (*m_at == '/') return ScanEndTag(begin);
    ++m_pieces;
    if (*m_at == '!' || *m_at == '?') return ScanOther(begin);
    return ScanStartTag(begin);
}

Markup XmlScanner::ScanEndTag(char* begin) {
    ++m_at;
    while (IsIn(kOfName, *m_at)) ++m_at;
    SkipBlanks();
    Expect('>');
    return {MarkupKind::EndTag, begin, m_at, {}};
}

Markup XmlScanner::ScanStartTag(char* begin) {
    const char* name = m_at;
    while (IsIn(kOfName, *m_at)) ++m_at;
    if (m_at == name) Fail(m_at);
    const std::string_view whole(name, m_at);
    SkipBlanks();
    while (IsIn(kOfAttributeName, *m_at)) ScanAttribute();
    const bool isEmpty = *m_at == '/';
    if (isEmpty) ++m_at;
    Expect('>');
    return {isEmpty ? MarkupKind::EmptyTag : MarkupKind::StartTag, begin, m_at, whole};
}

void XmlScanner::ScanAttribute() {
    ++m_pieces;
    while (IsIn(kOfAttributeName, *m_at)) ++m_at;
    SkipBlanks();
    Expect('=');
    SkipBlanks();
    const char quote = *m_at;
    if (quote != '"' && quote != '\'') Fail(m_at);
    ++m_at;
    while (*m_at != quote && *m_at != '\0') ++m_at;
    Expect(quote);
    SkipBlanks();
}

// A markup of a kind that is not known ends at the first >.
Markup XmlScanner::ScanOther(char* begin) {
    if (*m_at == '?') return PassOver(begin, begin + 2, "?>");
    if (StartsWith(m_at, "!--")) return PassOver(begin, begin + 4, "-->");
    if (StartsWith(m_at, "![CDATA[")) return PassOver(begin, begin + 9, "]]>");
    if (StartsWith(m_at, "!DOCTYPE") && IsBlank(m_at[8])) return ScanDocumentType(begin);
    return PassOver(begin, begin + 2, ">");
}

// Brackets within it are passed over in pairs.
Markup XmlScanner::ScanDocumentType(char* begin) {
    int depth = 0;
    for (m_at = begin + 10; depth > 0 || *m_at != '>'; ++m_at) {
        if (*m_at == '\0') Fail(m_at);
        if (*m_at == '[') ++depth;
        if (*m_at == ']' && depth > 0) --depth;
    }
    return {MarkupKind::Other, begin, ++m_at, {}};
}

Markup XmlScanner::PassOver(char* begin, char* content, std::string_view terminator) {
    const std::size_t found = std::string_view(content, m_end).find(terminator);
    if (found == std::string_view::npos) Fail(m_end);
    m_at = content + found + terminator.size();
    return {MarkupKind::Other, begin, m_at, {}};
}

void XmlScanner::SkipBlanks() {
    while (IsBlank(*m_at)) ++m_at;
}

void XmlScanner::Expect(char c) {
    if (*m_at != c) Fail(m_at);
    ++m_at;
}
