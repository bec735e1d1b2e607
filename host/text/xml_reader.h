// XML by strangers, event by event and in bounded memory: any encoding that the system's converter knows, and
// what is wrong with a document that is not whole. What a GPX document says: host/tracks/gpx_reader.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/text/file_bytes.h"

namespace host {

// The attributes of one element; valid during the call only.
class XmlAttributes {
 public:
    explicit XmlAttributes(const char** pairs) : m_pairs(pairs) {}
    // Null when there is none of that local name.
    const char* Find(std::string_view localName) const;

 private:
    const char** m_pairs;  // name, value, … null
};

// Receives a document. Texts are UTF-8, names as they are written, with their prefix.
class XmlEvents {
 public:
    virtual ~XmlEvents() = default;
    // An answer that is not empty ends the reading; it says why.
    virtual std::string OnStart(std::string_view name, const XmlAttributes& attributes) = 0;
    virtual void OnEnd() = 0;
    virtual void OnText(std::string_view piece) = 0;  // a text may come in several pieces
};

// "gpxtpx:speed" is "speed".
std::string_view LocalName(std::string_view name);

struct XmlOutcome {
    std::string problem;              // empty: the document is whole
    std::uint64_t line = 0;           // where the problem is; 0 when it is none of a place
    std::uint64_t replacedBytes = 0;  // that are no UTF-8 in a document which says that it is; read as "?"
};

// Reads to the end of the file or to the first problem; everything before it has been handed over. Refused are
// compressed files, declared entities (a few lines of them can make a text of any length), elements nested more
// than 256 deep, and a single tag, comment or attribute of more than 4 MB.
XmlOutcome ReadXml(FileReader& file, XmlEvents& events);

}  // namespace host
