// The page's sources, as they were in host/web/ when the program was built. The page itself:
// host/page/web_page.h.
#pragma once

#include <string_view>

namespace host {

extern const std::string_view kWebPage;    // HTML with @NAME@ where something goes
extern const std::string_view kWebStyle;   // Leaflet's and ours
extern const std::string_view kWebScript;  // likewise

// SHA-256 in hexadecimal.
extern const std::string_view kWebStyleHash;
extern const std::string_view kWebScriptHash;

}  // namespace host
