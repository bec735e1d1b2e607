// What a file's name tells of its kind.
#pragma once

#include <filesystem>
#include <string>

namespace host {

// ".gpx" of "Lake.GPX": in small letters, with the point; empty when there is none.
std::string ExtensionOf(const std::filesystem::path& file);

// Whether the library may take it for a track.
inline bool IsTrackFile(const std::filesystem::path& file) { return ExtensionOf(file) == ".gpx"; }

}  // namespace host
