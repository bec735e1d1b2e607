// Descriptors behind the streams of platform/stream.cpp: platform/posix/file.cpp, platform/windows/file.cpp.
#pragma once

#include <cstdint>
#include <cstdio>

namespace platform {

// What the letters of a stream's mode say.
struct StreamMode {
    bool reads;
    bool writes;
    bool creates;
    bool truncates;
    bool appends;
    bool isExclusive;        // x: never an existing file
    bool isCommitted;        // c
    const char* forRuntime;  // r, w or a, then b, then +
};

// A descriptor that no child process inherits; -1 when the path is none for a file, what it leads to is no
// ordinary file, or the mode is not possible. `isNew`: the file was made.
int OpenDescriptor(const wchar_t* path, const StreamMode& mode, bool& isNew);

// Null, with the descriptor closed, when the runtime has no stream left.
std::FILE* StreamOf(int descriptor, const StreamMode& mode);

// Waits until storage has the stream's content; what the runtime holds back is not part of it.
bool CommitContent(std::FILE* stream);

// Waits until storage has the name of a new file, where the system leaves that to us.
void CommitName(const wchar_t* path);

// Forgets what the runtime holds back, and cuts the file.
bool DropAndCut(std::FILE* stream, std::int64_t size);

}  // namespace platform
