// The parser of XML: expat, or what the system has. One form a system: host/posix, host/windows. What is read
// is decided in host/text/xml_reader.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "host/text/xml_reader.h"

namespace host {

// The bytes of a document piece by piece, from the declaration on, and those that should be UTF-8 made so.
class XmlBytes {
 public:
    // `piece`: room for pieces, with the beginning of the file in it; its first `size` bytes are filled.
    XmlBytes(FileReader& file, std::vector<char>& piece, std::size_t size);

    // What the parser must be told, since the document declares something else (host/text/xml_encoding.h); or
    // null.
    const char* Encoding() const { return m_encoding; }
    bool IsUtf8() const { return m_isUtf8; }
    std::string_view Beginning() const {
        return {m_piece.data() + m_at, m_size - m_at};
    }  // before the first Next()

    // Valid until the next call. `isLast` becomes true with the last one, and when the file cannot be read on.
    std::string_view Next(bool& isLast);

    std::uint64_t LinesSkipped() const { return m_linesSkipped; }
    std::uint64_t ReplacedBytes() const { return m_replacedBytes; }

 private:
    void Refill();

    FileReader& m_file;
    std::vector<char>& m_piece;
    std::size_t m_size, m_at = 0;  // of the piece: filled, and handed out
    bool m_isFirst = true;
    bool m_isUtf8 = false;
    const char* m_encoding = nullptr;
    std::uint64_t m_linesSkipped = 0, m_replacedBytes = 0;
};

// As ReadXml says; lines are counted from the first byte.
XmlOutcome ParseXml(XmlBytes& bytes, XmlEvents& events);

}  // namespace host
