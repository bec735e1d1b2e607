// A file's new content on its way: written beside the file and put in its place, or, for want of that, over the
// old one. Paths are those of the system (platform/windows/host_path.h). What decides between the two ways:
// platform/windows/replace_file.cpp.
#pragma once

#include <windows.h>

#include <string>

#include "platform/content.h"
#include "platform/windows/host_path.h"

namespace platform {

enum class WriteTime { Now, Kept };

// Makes a file of a name of its own in the folder of `path`; it is on storage when this returns. It is as old
// as the `existing` one, hidden like it, and perhaps as written at that one's time; null: there is none. Its
// path goes to `beside`. An error of the system; then, and when the content throws, there is no such file.
DWORD WriteBeside(const std::wstring& path, const ContentInPieces& content, const Found* existing,
                  WriteTime time, std::wstring& beside);

// Gives the file beside the name of `path`, in one step, and the rights of the file that it replaces, as far as
// the process may give them. When that is not the one that was `read` it stays; null: whatever is there. An
// error of the system; then there is no file beside any more, and what was there is as it was.
DWORD PutInPlace(const std::wstring& beside, const std::wstring& path, const FileState* read);

// On storage when this returns true; otherwise the old content is there, unless the storage itself fails.
bool WriteOver(const std::wstring& path, const std::string& bytes);

}  // namespace platform
