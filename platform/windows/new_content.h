// A file's new content on its way: written beside the file and put in its place, or, for want of that, over the
// old one. Paths are those of the system (platform/windows/host_path.h). What decides between the two ways:
// platform/windows/replace_file.cpp.
#pragma once

#include <windows.h>

#include <string>

namespace platform {

// Makes a file of a name of its own in the folder of `path`; it is on storage when this returns, and says that
// it was written at that time unless `time` is null. Its path goes to `beside`. An error of the system; then
// there is no such file.
DWORD WriteBeside(const std::wstring& path, const std::string& bytes, const FILETIME* time,
                  std::wstring& beside);

// Whether a file that is not there, or that somebody takes away meanwhile, is made.
enum class IfMissing { Make, Leave };

// How the system puts one file in the place of another: as ReplaceFileW.
using Replace = BOOL(WINAPI*)(LPCWSTR, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID);

// Puts the file beside in the place of `path`, whose attributes and rights stay. After an error of the system
// there is the old file alone. Only where the system has lost the old one, and does not let the new one have
// its name, does that stay where it is, as nothing else is left.
DWORD PutInPlace(const std::wstring& beside, const std::wstring& path, IfMissing ifMissing,
                 Replace replace = ::ReplaceFileW);

// On storage when this returns true; otherwise the old content is there, unless the storage itself fails.
bool WriteOver(const std::wstring& path, const std::string& bytes);

}  // namespace platform
