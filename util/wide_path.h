// Narrow device paths, ANSI code page, taken apart safely: in double-byte code pages a backslash byte may be
// half of a character, so they are split as wide text. Inner to the library; what hosts may use is in
// util/paths.h.
#pragma once

#include <string>

// As wide text of at most 260 units. A longer path is cut there, and so is one that names no file.
std::wstring WidePath(const std::string& path);

// Without folder and extension: what stands between the last backslash and the last dot behind it.
std::string FileStem(const std::string& path);

// Replaces each character that no file name may hold by an underscore; true when there was one. The bytes of
// two-byte characters are left alone.
bool ReplaceInvalidFileNameCharacters(std::string& name);

// Folder, backslash, name, dot and "gpx".
std::string TrackFilePath(const std::string& folder, const std::string& name);
