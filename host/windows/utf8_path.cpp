#include "host/text/utf8_path.h"

#include "host/windows/wide_text.h"

namespace host {

std::filesystem::path PathOf(std::string_view utf8) { return WideText(utf8); }

std::string Utf8Of(const std::filesystem::path& path) { return NarrowText(path.native()); }

}  // namespace host
