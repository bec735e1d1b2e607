// Goes through an XML text markup by markup and tells where each begins and ends, without keeping anything of
// it. It takes for a tag what the RapidXML parser takes for one, so a text can be cut between two markups and
// each part given to the parser.
#pragma once

#include <cstddef>
#include <string_view>

enum class MarkupKind {
    StartTag,
    EmptyTag,  // <a/>
    EndTag,
    Other,  // a comment, CDATA section, processing instruction, declaration or document type
    None    // the text is at its end
};

struct Markup {
    MarkupKind kind;
    char* begin;            // at its <
    char* end;              // behind its >
    std::string_view name;  // of a start or empty tag
};

class XmlScanner {
 public:
    // The text is zero-terminated, and holds no zero before `end`.
    XmlScanner(char* text, char* end) : m_at(text), m_end(end) {}

    // How many markups other than end tags, and attributes, it has come by: a tree of them has so many nodes at
    // most, and one more for each text.
    std::size_t Pieces() const { return m_pieces; }

    // The next markup; what stands before it is passed over. Throws rapidxml::parse_error for one that has no
    // end. One that is returned would be the same whatever followed it.
    Markup Next();

    const char* TextEnd() const { return m_end; }

    // Where it is, and going on from a place further on that the caller has looked at up to there.
    char* At() const { return m_at; }
    void GoOnAt(char* at) { m_at = at; }
    // The same text lies elsewhere, and may go on further.
    void GoOnIn(char* at, char* end) {
        m_at = at;
        m_end = end;
    }

 private:
    Markup ScanEndTag(char* begin);
    Markup ScanStartTag(char* begin);
    Markup ScanOther(char* begin);
    Markup ScanDocumentType(char* begin);
    Markup PassOver(char* begin, char* content, std::string_view terminator);
    void ScanAttribute();
    void SkipBlanks();
    void Expect(char c);

    char* m_at;
    char* m_end;
    std::size_t m_pieces = 0;
};
