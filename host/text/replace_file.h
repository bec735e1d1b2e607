// A small file of the host's own, written whole or not at all.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace host {

// Makes `text` the content of the file, and the file and its folders where they are missing, in one step: a
// power cut or a full disk leaves the old content or the new. A link keeps leading to its file, and the file
// keeps its rights. Otherwise says why not.
std::optional<std::string> ReplaceFile(const std::filesystem::path& file, const std::string& text);

}  // namespace host
