// Expat.
#include "host/text/xml_parser.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <memory>
#include <new>

#include <expat.h>

namespace host {
namespace {

constexpr int kFirstOfTwo = -2;  // the parser's mark for a byte that begins a character of two
constexpr int kNoCharacter = -1;
constexpr int kDeepest = 256;
constexpr std::uint64_t kLongestToken = 4'000'000;  // bytes that the parser holds until it knows what they are

// One character of the encoding to Unicode. `cut` tells that the bytes are only its beginning.
int Convert(iconv_t converter, const char* bytes, std::size_t size, bool& cut) {
    std::array<unsigned char, 8> unicode{};
    char* in = const_cast<char*>(bytes);
    char* out = reinterpret_cast<char*>(unicode.data());
    std::size_t inLeft = size, outLeft = unicode.size();
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    const bool good = iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
    cut = !good && errno == EINVAL;
    if (!good || outLeft != unicode.size() - 4) return kNoCharacter;
    return unicode[0] | unicode[1] << 8 | unicode[2] << 16;
}

int XMLCALL ConvertTwo(void* converter, const char* bytes) {
    bool cut = false;
    return Convert(converter, bytes, 2, cut);
}

void XMLCALL Close(void* converter) { iconv_close(converter); }

// Fills the parser's table for a code page of one or two bytes a character, through the system's converter.
// XML_STATUS_ERROR for a name that it does not know.
int XMLCALL FillEncoding(void*, const XML_Char* name, XML_Encoding* encoding) {
    const iconv_t converter = iconv_open("UTF-32LE", name);
    if (converter == reinterpret_cast<iconv_t>(-1)) return XML_STATUS_ERROR;
    for (int byte = 0; byte < 256; ++byte) {
        const char one = static_cast<char>(byte);
        bool cut = false;
        encoding->map[byte] = Convert(converter, &one, 1, cut);
        if (cut) encoding->map[byte] = kFirstOfTwo;
    }
    encoding->data = converter;
    encoding->convert = ConvertTwo;
    encoding->release = Close;
    return XML_STATUS_OK;
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

}  // namespace

XmlOutcome ParseXml(XmlBytes& bytes, XmlEvents& events) {
    Parser parser(events, bytes.Encoding());
    for (bool isLast = false; !isLast;) {
        const std::string_view piece = bytes.Next(isLast);
        if (!parser.Take(piece.data(), piece.size(), isLast)) return {parser.Problem(), parser.Line(), 0};
    }
    return {};
}

}  // namespace host
