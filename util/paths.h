// Folders, full paths, extensions and safe file names. Device paths: backslash-separated, rooted, without drive
// letter, at most 259 characters (platform/device.h says where the root is). Plain functions; any thread.
#pragma once

#include <string>

#include "util/export.h"

// Folder of the running program, no trailing backslash.
QTRACE_API std::wstring GetInitGlobalPath();

// Writes folder, backslash and name to dst: the program's folder, or the storage card's root. Nothing is done
// when name and terminator do not fit below dstSize; give dst room for the folder as well, at least dstSize
// bytes. Each call leaves dstSize + 1 bytes allocated for good.
QTRACE_API void FileAbsolutPath(char* dst, const char* name, int dstSize, bool onCard);

// Whether the path names a folder. False for a file, the root itself, and paths of 260 characters or more.
QTRACE_API bool CheckDirectoryExist(const std::wstring& path);

// Whether the folder is there afterwards. Makes the last level only; path in the ANSI code page, non-null.
QTRACE_API bool CreateDir(const char* path);

// The text after the last dot, which may be empty and whose case is kept. False, with suffix untouched, without
// a dot.
QTRACE_API bool GetFileSuffixName(const std::wstring& path, std::wstring& suffix);

// The beginning of src that fits in maxBytes (below 260) without splitting a double-byte character.
// makeFileName: also replaces each of \ / : * ? " < > | by an underscore.
QTRACE_API void GetString_1(const std::string& src, std::string& dst, int maxBytes, bool makeFileName);

namespace paths {

// The characters that no file name may hold, as GetString_1 replaces them.
inline constexpr char kInvalidFileNameCharacters[] = "\\/:*?\"<>|";
// Elements of a path, its terminator included.
inline constexpr int kMaxPath = 260;

}  // namespace paths
