#include "gpx/xml_printer.h"

#include <algorithm>

#include "util/numbers.h"

namespace {

std::string_view Reference(char c) {
    switch (c) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '\'':
            return "&apos;";
        case '"':
            return "&quot;";
        case '&':
            return "&amp;";
        default:
            return {};
    }
}

// The character `asItIs` needs no reference: it is a quote within quotes of the other kind.
void AppendEscaped(std::string& text, std::string_view value, char asItIs) {
    for (const char c : value) {
        const std::string_view reference = c == asItIs ? std::string_view() : Reference(c);
        if (reference.empty())
            text += c;
        else
            text += reference;
    }
}

// Short pieces put together before they go to the text in one step, which looks after its room each time.
class Line {
 public:
    static constexpr std::size_t kRoom = 512;

    void Add(char c) { *m_end++ = c; }
    void Add(std::string_view piece) { m_end = std::copy(piece.begin(), piece.end(), m_end); }
    void AddTabs(std::size_t count) { m_end = std::fill_n(m_end, count, '\t'); }
    std::string_view Text() const { return {m_text, m_end}; }

 private:
    char m_text[kRoom];
    char* m_end = m_text;
};

}  // namespace

void XmlPrinter::Declaration() {
    m_text += "<?xml";
    Attribute("version", "1.0");
    Attribute("encoding", "utf-8");
    Attribute("standalone", "yes");
    m_text += "?>\n";
}

void XmlPrinter::Begin(std::string_view name) {
    StartLine(name);
    ++m_level;
    m_isStartTagOpen = true;
}

void XmlPrinter::End(std::string_view name) {
    --m_level;
    if (m_isStartTagOpen) {
        m_isStartTagOpen = false;
        m_text += "/>\n";
        return;
    }
    m_text.append(m_level, '\t');
    EndTag(name);
}

void XmlPrinter::Attribute(std::string_view name, std::string_view value) {
    const char quote = value.find('"') == value.npos ? '"' : '\'';
    const char otherQuote = quote == '"' ? '\'' : '"';
    m_text += ' ';
    m_text += name;
    m_text += '=';
    m_text += quote;
    AppendEscaped(m_text, value, otherQuote);
    m_text += quote;
}

void XmlPrinter::Attribute(std::string_view name, double value) {
    char number[numbers::kRealRoom];
    const char* end = numbers::WriteReal(value, number);
    Line line;
    line.Add(' ');
    line.Add(name);
    line.Add("=\"");
    line.Add(std::string_view(number, end));
    line.Add('"');
    m_text += line.Text();
}

void XmlPrinter::Element(std::string_view name, std::string_view value) {
    StartLine(name);
    if (value.empty()) {
        m_text += "/>\n";
        return;
    }
    m_text += '>';
    AppendEscaped(m_text, value, '\0');
    EndTag(name);
}

void XmlPrinter::Element(std::string_view name, std::int32_t value) {
    char number[numbers::kIntegerRoom];
    const char* end = numbers::WriteInteger(value, number);
    PlainElement(name, {number, end});
}

void XmlPrinter::Element(std::string_view name, double value) {
    char number[numbers::kRealRoom];
    const char* end = numbers::WriteReal(value, number);
    PlainElement(name, {number, end});
}

void XmlPrinter::PlainElement(std::string_view name, std::string_view value) {
    CloseStartTag();
    Line line;
    line.AddTabs(m_level);
    line.Add('<');
    line.Add(name);
    line.Add('>');
    line.Add(value);
    line.Add("</");
    line.Add(name);
    line.Add(">\n");
    m_text += line.Text();
}

void XmlPrinter::CloseStartTag() {
    if (m_isStartTagOpen) m_text += ">\n";
    m_isStartTagOpen = false;
}

void XmlPrinter::StartLine(std::string_view name) {
    CloseStartTag();
    m_text.append(m_level, '\t');
    m_text += '<';
    m_text += name;
}

void XmlPrinter::EndTag(std::string_view name) {
    m_text += "</";
    m_text += name;
    m_text += ">\n";
}
