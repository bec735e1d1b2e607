// What an XML document's bytes are, as far as the parser is not told rightly by the document itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// The encoding that the parser must be told, since the beginning of the file is not what it declares: UTF-8
// with a byte order mark, or single bytes under a declaration of UTF-16. Null otherwise.
const char* EncodingAgainstDeclaration(std::string_view beginning);

// The encoding that the declaration names, in lower case; empty when there is none.
std::string DeclaredEncoding(std::string_view beginning);

// Whether the document is read as UTF-8: it says so, or says nothing.
bool IsUtf8(std::string_view beginning);

// Makes UTF-8 of what should be UTF-8: each byte that is none becomes "?". A character that the end of the
// piece cuts is held back; returns how many bytes at the front are done.
std::size_t MendUtf8(char* bytes, std::size_t size, bool isLast, std::uint64_t& replaced);

}  // namespace host
