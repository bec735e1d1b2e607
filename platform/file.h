// Streams and file operations on device paths: backslash-separated, rooted where SetDeviceRoot says, at most
// 259 characters, every component found ignoring letter case. Wide paths are UTF-16, narrow ones in the ANSI
// code page.
#pragma once

#include <cstdio>
#include <string>

namespace platform {

// Opens a stream as the C library does, plus mode letter c: such a stream is committed to storage by every
// fflush below. "rb+" of a missing file fails, "wb+" creates or truncates. Null for a folder, a device, a name
// with wildcards or other characters that no file name may hold, a path too long. Handles are not inherited by
// child processes.
std::FILE* fopen(const char* path, const char* mode);
std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);

// Flushes the stream and, when it was opened to be committed, waits until the storage has the data. 0, or EOF.
int fflush(std::FILE* stream);

// Closes the stream; a null stream is answered with EOF and is harmless.
int fclose(std::FILE* stream);

// Makes the last folder of the path. False when anything of that name exists, a parent is missing, or the name
// is not one.
bool CreateDirectoryW(const wchar_t* path);

// Deletes a file; false for folders, missing and read-only files.
bool DeleteFileW(const wchar_t* path);

// Moves or renames a file or folder. False, with nothing changed, when `to` exists: backups rely on it.
bool MoveFileW(const wchar_t* from, const wchar_t* to);

// The path of the running executable, as a device path. Returns its length, or `size` when it was cut to size -
// 1 characters and a terminator.
unsigned GetModuleFileNameW(wchar_t* path, unsigned size);

// Makes `bytes` the content of a file in one step: after a power cut the file holds the old content or the new,
// never half of one. A new file has the rights that fopen would give it, an existing one keeps its own. When no
// file can be made beside it, it is written directly. False when the content could not be written.
bool ReplaceFileContent(const wchar_t* path, const std::string& bytes);

// A new, empty, uniquely named file in the system's temporary folder, open for writing; its path goes to `path`
// in the form that DeleteTemporaryFile and ReadTemporaryFile take. Null when none can be made.
std::FILE* CreateTemporaryFile(std::string& path);
std::FILE* OpenTemporaryFile(const std::string& path);
bool DeleteTemporaryFile(const std::string& path);

}  // namespace platform
