#include "host/text/utf8_path.h"

namespace host {

std::filesystem::path PathOf(std::string_view utf8) { return utf8; }

std::string Utf8Of(const std::filesystem::path& path) { return path.native(); }

}  // namespace host
