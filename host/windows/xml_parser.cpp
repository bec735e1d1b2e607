// XmlLite, which is part of the system. Other than expat it reads no document with a document type, nor one
// whose prefixes are not declared, and it tells less of what is wrong. Encodings that are no Unicode are
// converted by the system's code pages.
#include "host/text/xml_parser.h"

#include <windows.h>
#include <xmllite.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "host/text/xml_encoding.h"
#include "host/windows/wide_text.h"

namespace host {
namespace {

constexpr std::size_t kLongestToken = 4'000'000;

// Code pages of the encodings that are no Unicode, by the beginning of their names.
UINT CodePageOf(const std::string& encoding) {
    static const std::map<std::string, UINT> kPages = {
        {"us-ascii", 20127}, {"gb2312", 936},   {"gbk", 936},      {"big5", 950},
        {"shift_jis", 932},  {"koi8-r", 20866}, {"koi8-u", 21866}, {"euc-kr", 949}};
    const auto numberBehind = [&encoding](std::string_view begin, UINT first) {
        UINT number = 0;
        const char* const end = encoding.data() + encoding.size();
        const bool isNumber = encoding.starts_with(begin) &&
                              std::from_chars(encoding.data() + begin.size(), end, number).ptr == end;
        return isNumber && number != 0 ? first + number : 0;
    };
    if (const UINT page = numberBehind("iso-8859-", 28590)) return page;
    if (const UINT page = numberBehind("windows-", 0)) return page;
    const auto page = kPages.find(encoding);
    return page == kPages.end() ? 0 : page->second;
}

// From a code page to UTF-8, piece by piece.
class Converter {
 public:
    explicit Converter(UINT page) : m_page(page) {}

    // The first of two bytes at the end of a piece waits for the second.
    std::string Convert(std::string_view bytes, bool isLast) {
        m_waiting += bytes;
        std::size_t size = 0;
        while (size < m_waiting.size()) {
            const bool isFirst = ::IsDBCSLeadByteEx(m_page, static_cast<BYTE>(m_waiting[size]));
            if (isFirst && size + 1 == m_waiting.size() && !isLast) break;
            size += isFirst ? 2 : 1;
        }
        size = std::min(size, m_waiting.size());
        std::wstring wide(size, L'\0');
        const int units = ::MultiByteToWideChar(m_page, 0, m_waiting.data(), static_cast<int>(size),
                                                wide.data(), static_cast<int>(wide.size()));
        m_waiting.erase(0, size);
        wide.resize(static_cast<std::size_t>(std::max(units, 0)));
        return NarrowText(wide);
    }

 private:
    UINT m_page;
    std::string m_waiting;
};

// Counts its users, as the system's objects do, and belongs to nobody else.
class BytesStream : public ISequentialStream {
 public:
    explicit BytesStream(XmlBytes& bytes) : m_bytes(bytes) {
        const UINT page = bytes.IsUtf8() ? 0 : CodePageOf(DeclaredEncoding(bytes.Beginning()));
        if (page != 0) m_converter.emplace(page);
    }

    bool IsUtf8() const { return m_bytes.IsUtf8() || m_converter; }

    HRESULT WINAPI Read(void* buffer, ULONG size, ULONG* read) override {
        while (m_piece.empty() && !m_isLast) Refill();
        const std::size_t count = std::min<std::size_t>(size, m_piece.size());
        std::memcpy(buffer, m_piece.data(), count);
        m_piece.remove_prefix(count);
        if (read != nullptr) *read = static_cast<ULONG>(count);
        return count == size ? S_OK : S_FALSE;
    }
    HRESULT WINAPI Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
        const bool isKnown = id == IID_IUnknown || id == IID_ISequentialStream;
        *object = isKnown ? this : nullptr;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    ULONG WINAPI AddRef() override { return 2; }
    ULONG WINAPI Release() override { return 1; }

 private:
    void Refill() {
        m_piece = m_bytes.Next(m_isLast);
        if (!m_converter) return;
        const std::size_t declaration =
            m_isFirst ? m_piece.find("?>") + 2 : 0;  // it names what is not so any more
        m_isFirst = false;
        m_converted = m_converter->Convert(m_piece.substr(std::min(declaration, m_piece.size())), m_isLast);
        m_piece = m_converted;
    }

    XmlBytes& m_bytes;
    std::optional<Converter> m_converter;
    std::string m_converted;
    std::string_view m_piece;
    bool m_isFirst = true, m_isLast = false;
};

// What XmlLite offers, looked up when it is needed.
template <typename Function>
Function* InXmlLite(const char* name) {
    static const HMODULE library = ::LoadLibraryExW(L"xmllite.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

class Parser {
 public:
    Parser(XmlBytes& bytes, XmlEvents& events) : m_stream(bytes), m_events(events) {
        const auto create = InXmlLite<decltype(CreateXmlReader)>("CreateXmlReader");
        const auto createInput =
            InXmlLite<decltype(CreateXmlReaderInputWithEncodingName)>("CreateXmlReaderInputWithEncodingName");
        if (create == nullptr || createInput == nullptr) return;
        create(__uuidof(IXmlReader), reinterpret_cast<void**>(&m_reader), nullptr);
        if (m_reader == nullptr) throw std::bad_alloc();
        if (m_stream.IsUtf8()) createInput(&m_stream, nullptr, L"UTF-8", FALSE, nullptr, &m_input);
        m_reader->SetInput(m_input == nullptr ? static_cast<IUnknown*>(&m_stream) : m_input);
    }
    ~Parser() {
        if (m_reader != nullptr) m_reader->Release();
        if (m_input != nullptr) m_input->Release();
    }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    XmlOutcome Run() {
        if (m_reader == nullptr) return {"this system has no XmlLite, which reads XML", 0, 0};
        HRESULT result = S_OK;
        XmlNodeType type = XmlNodeType_None;
        while (m_refusal.empty() && (result = m_reader->Read(&type)) == S_OK && HasMovedOn(type)) Take(type);
        if (m_refusal.empty() && result == S_FALSE && m_hasRoot && m_depth == 0) return {};
        UINT line = 0;
        m_reader->GetLineNumber(&line);
        return {m_refusal.empty() ? WhyNot(result) : m_refusal, std::max(line, m_place.first), 0};
    }

 private:
    // Wine hands over the last element of a document that breaks off again and again.
    bool HasMovedOn(XmlNodeType type) {
        if (type != XmlNodeType_Element) return true;
        std::pair<UINT, UINT> place;
        m_reader->GetLineNumber(&place.first);
        m_reader->GetLinePosition(&place.second);
        return std::exchange(m_place, place) != place;
    }

    void Take(XmlNodeType type) {
        if (type == XmlNodeType_Element) TakeElement();
        if (type == XmlNodeType_EndElement) End();
        if (type == XmlNodeType_Text || type == XmlNodeType_CDATA || type == XmlNodeType_Whitespace) TakeText();
    }

    void TakeElement() {
        m_hasRoot = true;
        const bool isEmpty = m_reader->IsEmptyElement();
        const std::string name = Name();
        std::vector<std::string> words;
        for (HRESULT more = m_reader->MoveToFirstAttribute(); more == S_OK;
             more = m_reader->MoveToNextAttribute()) {
            words.push_back(Name());
            words.push_back(Value());
        }
        std::vector<const char*> pairs;
        for (const std::string& word : words) pairs.push_back(word.c_str());
        pairs.push_back(nullptr);
        ++m_depth;
        m_refusal = m_events.OnStart(name, XmlAttributes(pairs.data()));
        if (isEmpty && m_refusal.empty()) End();
    }

    void End() {
        --m_depth;
        m_events.OnEnd();
    }

    void TakeText() {
        if (m_depth != 0) m_events.OnText(Value());
    }

    std::string Name() {
        const wchar_t* name = L"";
        UINT size = 0;
        m_reader->GetQualifiedName(&name, &size);
        return NarrowText({name, size});
    }

    std::string Value() {
        const wchar_t* value = L"";
        UINT size = 0;
        m_reader->GetValue(&value, &size);
        if (size > kLongestToken) m_refusal = "a single text or attribute is longer than 4 MB";
        return NarrowText({value, size});
    }

    static std::string WhyNot(HRESULT result) {
        static const std::map<unsigned, const char*> kReasons = {
            {WC_E_DTDPROHIBITED, "it has a document type, which no GPX document needs"},
            {MX_E_INPUTEND, "it ends too early"},
            {MX_E_ENCODING, "its encoding is not known"},
            {NC_E_UNDECLAREDPREFIX, "it has a prefix that it does not declare"},
            {WC_E_ELEMENTMATCH, "mismatched tag"},
            {SC_E_MAXELEMENTDEPTH, "elements are nested more than 256 deep"}};
        const auto reason = kReasons.find(static_cast<unsigned>(result));
        if (reason != kReasons.end()) return reason->second;
        return SUCCEEDED(result) ? "it ends too early" : "not well-formed";
    }

    BytesStream m_stream;
    XmlEvents& m_events;
    IXmlReader* m_reader = nullptr;
    IUnknown* m_input = nullptr;
    std::string m_refusal;
    std::pair<UINT, UINT> m_place;  // line and column of the newest element
    int m_depth = 0;
    bool m_hasRoot = false;
};

}  // namespace

XmlOutcome ParseXml(XmlBytes& bytes, XmlEvents& events) { return Parser(bytes, events).Run(); }

}  // namespace host
