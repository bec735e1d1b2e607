// Texts and paths between the encodings a GPX exchange meets: UTF-8 in the document, the ANSI code page in our
// records, UTF-16 in paths.
#pragma once

#include <string>
#include <string_view>

namespace gpx {

// Document text to a record's field: at most `size` bytes, cut before a character that does not fit. The field
// has room for size + 1 bytes, which are cleared first.
void ToAnsi(std::string_view utf8, char* field, int size);

// The path of the file that is opened for `path`. It is named in the ANSI code page, so a path with characters
// that the code page lacks leads to no file.
std::wstring PathInAnsi(const std::wstring& path);

}  // namespace gpx
