// Text for the typesetter of manual pages: nothing in it is taken for a request.
#pragma once

#include <string>

namespace host {

// A piece of a line: signs that the typesetter would read or change are escaped, and everything beyond ASCII.
std::string Roff(const std::string& utf8);
std::string Bold(const std::string& utf8);
std::string Italic(const std::string& utf8);

// Lines as a help text has them: a blank line parts paragraphs, indented lines stand as they are, the others
// are filled. Ends with a line feed.
std::string RoffParagraphs(const std::string& utf8);

}  // namespace host
