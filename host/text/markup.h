// Text within HTML and XML documents. Reading such documents: host/text/xml_reader.h.
#pragma once

#include <string>

namespace host {

// Text as it stands in HTML, XML or an attribute between quotation marks. Bytes that are no UTF-8, and
// characters that XML cannot hold, become U+FFFD.
std::string MarkupText(const std::string& text);

}  // namespace host
