// Streams and file operations on device paths (platform/device_path.h): backslash-separated, rooted where
// SetDeviceRoot says, at most 259 characters, every component found ignoring letter case. Wide paths are
// UTF-16, narrow ones in the ANSI code page. A null or empty path is refused. Any thread.
//
// On a file system that tells letter case apart an entry spelled as asked for comes first. Characters that a
// device's file names cannot hold (< > | " : and control characters) are refused in new names only.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "platform/content.h"

namespace platform {

// Opens a stream as the C library does, plus mode letter c: such a stream is committed to storage by every
// fflush below, and so is the name of a file that it makes. "rb+" of a missing file fails, "wb+" creates or
// truncates, "wbx+" creates and fails where there is one. Null for a folder, a device, a name with wildcards or
// other characters that no file name may hold, a path too long, and for a read-only file that would be written.
// Handles are not inherited by child processes.
std::FILE* fopen(const char* path, const char* mode);
std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);

// Flushes the stream and, when it was opened to be committed, waits until the storage has the data. 0, or EOF;
// a null stream is answered with EOF and is harmless.
int fflush(std::FILE* stream);

// After a write that failed: forgets what the stream has not written yet, clears its error, and cuts the file
// to `size` bytes. False when it cannot be cut.
bool CutBack(std::FILE* stream, std::int64_t size);

// Closes the stream; a null stream is answered with EOF and is harmless.
int fclose(std::FILE* stream);

// Makes the last folder of the path. False when anything of that name exists, a parent is missing, or the name
// is not one.
bool CreateDirectoryW(const wchar_t* path);

// Deletes a file, but not what a link to it leads to; false for folders, devices, missing and read-only files.
bool DeleteFileW(const wchar_t* path);

// Moves or renames a file or folder. False, with nothing changed, when `to` exists: backups rely on it. Onto
// itself, and to a name that differs in letter case alone, is true. A file may move to another file system (a
// card), a folder not.
bool MoveFileW(const wchar_t* from, const wchar_t* to);

// The path of the running executable, as a device path. Returns its length, or `size` when it was cut to
// size - 1 characters and a terminator; 0 when there is no room at all. Outside of the device's root it is the
// path on this machine, which as a device path leads nowhere.
unsigned GetModuleFileNameW(wchar_t* path, unsigned size);

// Makes `content` that of a file in one step: after a power cut the file holds the old content or the new,
// never half of one. A new file has the rights that fopen would give it, an existing one keeps its own, and its
// owner where the process may set it; a link keeps leading to it. Only where the folder lets no file be made or
// renamed is the file written directly. False when the content could not be written, and for read-only files:
// then the old content is there (of a file written directly: unless the storage itself fails), and nothing
// else. So it is when the content throws. Only what is written directly is collected in memory.
bool ReplaceFileContent(const wchar_t* path, const ContentInPieces& content);
bool ReplaceFileContent(const wchar_t* path, const std::string& bytes);  // in one piece: platform/content.cpp

// Tells a file from every other, and from itself as soon as something has been written to it.
struct FileState {
    std::uint64_t storage, number;  // where it is
    std::uint64_t size;
    std::uint64_t time, fraction;  // of its last writing, as the system counts them
    bool operator==(const FileState&) const = default;
};

// Of the file that the stream reads. Asked for before the first byte is read, it tells later whether the file
// still is what was read. Nothing for a null stream.
std::optional<FileState> StateOf(std::FILE* stream);

// Likewise, for a repair that changes nothing of what a file says: the file keeps its last-write time, and it
// is never written directly. False, with nothing changed, when it cannot be done in one step, and when the file
// is not the one that was `read` any more: somebody has saved, deleted or renamed it meanwhile. That is looked
// at last of all, right before the exchange.
bool ExchangeFileContent(const wchar_t* path, const FileState& read, const std::string& bytes);

// A new, empty, uniquely named file in the system's temporary folder, for this user's eyes only, open for
// writing and reading; its path goes to `path` in the form that the two below take. Null when none can be made.
std::FILE* CreateTemporaryFile(std::string& path);

// Opened for reading; null when there is none.
std::FILE* OpenTemporaryFile(const std::string& path);
bool DeleteTemporaryFile(const std::string& path);

}  // namespace platform
