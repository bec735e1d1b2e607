#include "host/text/xml_reader.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <tuple>
#include <vector>

#include <expat.h>

#include "host/text/xml_encoding.h"

namespace host {
namespace {

constexpr int kDeepest = 256;
constexpr std::uint64_t kLongestToken = 4'000'000;  // bytes that the parser holds until it knows what they are
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

// The parser with its bounds; what it meets goes to the events.
class Parser {
 public:
    Parser(XmlEvents& events, const char* encoding) : m_events(events), m_parser(XML_ParserCreate(encoding)) {
        if (!m_parser) throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(m_parser.get(), OnText);
        XML_SetEntityDeclHandler(m_parser.get(), OnEntity);
        XML_SetUnknownEncodingHandler(m_parser.get(), FillEncoding, nullptr);
    }

    // False at the first problem.
    bool Take(const char* bytes, std::size_t size, bool isLast) {
        const auto status = XML_Parse(m_parser.get(), bytes, static_cast<int>(size), isLast ? 1 : 0);
        m_taken += size;
        if (status == XML_STATUS_ERROR) return false;
        if (Waiting() > kLongestToken) m_refusal = "a single tag, comment or attribute is longer than 4 MB";
        return m_refusal.empty();
    }
    std::string Problem() const {
        return m_refusal.empty() ? XML_ErrorString(XML_GetErrorCode(m_parser.get())) : m_refusal;
    }
    std::uint64_t Line() const { return XML_GetCurrentLineNumber(m_parser.get()); }

 private:
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    std::uint64_t Waiting() const {
        const auto at = XML_GetCurrentByteIndex(m_parser.get());
        return m_taken - (at < 0 ? 0 : static_cast<std::uint64_t>(at));
    }
    void Refuse(const std::string& why) {
        if (m_refusal.empty()) m_refusal = why;
        XML_StopParser(m_parser.get(), XML_FALSE);
    }

    static void XMLCALL OnStart(void* self, const char* name, const char** attributes) {
        auto& parser = *static_cast<Parser*>(self);
        if (++parser.m_depth > kDeepest) return parser.Refuse("elements are nested more than 256 deep");
        const std::string refusal = parser.m_events.OnStart(name, XmlAttributes(attributes));
        if (!refusal.empty()) parser.Refuse(refusal);
    }
    static void XMLCALL OnEnd(void* self, const char*) {
        auto& parser = *static_cast<Parser*>(self);
        --parser.m_depth;
        if (parser.m_refusal.empty()) parser.m_events.OnEnd();
    }
    static void XMLCALL OnText(void* self, const char* text, int size) {
        static_cast<Parser*>(self)->m_events.OnText({text, static_cast<std::size_t>(size)});
    }
    static void XMLCALL OnEntity(void* self, const char*, int, const char*, int, const char*, const char*,
                                 const char*, const char*) {
        static_cast<Parser*>(self)->Refuse("it declares entities, which no GPX document needs");
    }

    XmlEvents& m_events;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> m_parser;
    std::string m_refusal;
    std::uint64_t m_taken = 0;
    int m_depth = 0;
};

// Blank lines in front of the declaration are forbidden, and common.
std::size_t BlanksInFront(std::string_view beginning) {
    return std::min(beginning.find_first_not_of(" \t\r\n"), beginning.size());
}

XmlOutcome Problem(const std::string& problem, std::uint64_t line = 0) { return {problem, line, 0}; }

// Reads the file from its first piece on, which is in `piece` already.
XmlOutcome ReadPieces(FileReader& file, XmlEvents& events, std::vector<char>& piece, std::size_t size) {
    const std::string_view beginning(piece.data(), size);
    const std::size_t skipped = BlanksInFront(beginning);
    const auto linesSkipped =
        std::count(beginning.begin(), beginning.begin() + static_cast<long>(skipped), '\n');
    const bool isUtf8 = IsUtf8(beginning.substr(skipped));
    Parser parser(events, EncodingAgainstDeclaration(beginning.substr(skipped)));
    XmlOutcome outcome;
    std::size_t at = skipped;
    for (bool isLast = false; !isLast;) {
        isLast = size < piece.size();
        const std::size_t done =
            isUtf8 ? at + MendUtf8(piece.data() + at, size - at, isLast, outcome.replacedBytes) : size;
        if (!parser.Take(piece.data() + at, done - at, isLast)) {
            outcome.problem = parser.Problem();
            outcome.line = parser.Line() + static_cast<std::uint64_t>(linesSkipped);
            return outcome;
        }
        const std::size_t heldBack = size - done;
        std::memmove(piece.data(), piece.data() + done, heldBack);
        if (!isLast) size = heldBack + file.Read(piece.data() + heldBack, piece.size() - heldBack);
        at = 0;
        if (!file.Problem().empty()) return Problem("it cannot be read on: " + file.Problem());
    }
    return outcome;
}

}  // namespace

const char* XmlAttributes::Find(std::string_view localName) const {
    for (const char** pair = m_pairs; *pair != nullptr; pair += 2)
        if (LocalName(*pair) == localName) return pair[1];
    return nullptr;
}

std::string_view LocalName(std::string_view name) { return name.substr(name.rfind(':') + 1); }

XmlOutcome ReadXml(FileReader& file, XmlEvents& events) {
    std::vector<char> piece(kPiece);
    const std::size_t size = file.Read(piece.data(), piece.size());
    if (!file.Problem().empty()) return Problem(file.Problem());
    if (size == 0) return Problem("it is empty");
    if (const char* form = CompressedAs({piece.data(), size}))
        return Problem(std::string("it is compressed (") + form + "); unpack it first");
    return ReadPieces(file, events, piece, size);
}

}  // namespace host
