// Paths are UTF-8 wherever they are text. One form a system: host/posix, where a path is its bytes, and
// host/windows, where it is UTF-16: there std::filesystem::path reads and writes narrow text in other ways.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace host {

std::filesystem::path PathOf(std::string_view utf8);
std::string Utf8Of(const std::filesystem::path& path);

}  // namespace host
