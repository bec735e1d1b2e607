// Streams. What is done to files and folders by name: platform/posix/file_names.cpp.
#include "platform/file.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "platform/code_page.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/file_kind.h"
#include "platform/posix/host_path.h"

namespace platform {

namespace {

struct Mode {
    int flags;
    std::string forStream;  // r, w or a, then b, then +
    bool isCommitted;
};

// Nothing for a mode that starts with none of r, w and a.
std::optional<Mode> ParseMode(std::wstring_view mode) {
    const auto has = [mode](wchar_t letter) { return mode.find(letter) != std::wstring_view::npos; };
    const wchar_t kind = mode.empty() ? L'\0' : mode.front();
    int flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    if (kind == L'w')
        flags |= O_CREAT | O_TRUNC;
    else if (kind == L'a')
        flags |= O_CREAT | O_APPEND;
    else if (kind != L'r')
        return std::nullopt;
    if (has(L'x')) flags |= O_EXCL;
    flags |= has(L'+') ? O_RDWR : kind == L'r' ? O_RDONLY : O_WRONLY;
    const std::string forStream = std::string(1, static_cast<char>(kind)) + (has(L'+') ? "b+" : "b");
    return Mode{flags, forStream, has(L'c')};
}

bool Writes(const Mode& mode) { return (mode.flags & O_ACCMODE) != O_RDONLY; }

// Before it is opened: opening a fifo would wait for its other end, opening a device may act on it.
bool MayBeOpened(const HostPath& file, const Mode& mode) {
    struct stat status;
    if (!file.exists || ::stat(file.Text().c_str(), &status) != 0) return (mode.flags & O_CREAT) != 0;
    return S_ISREG(status.st_mode) && !(Writes(mode) && IsReadOnly(status));
}

// The file may have been exchanged since it was looked at, so what was opened is looked at again.
std::FILE* OpenStream(const HostPath& file, const Mode& mode) {
    Descriptor opened(::open(file.Text().c_str(), mode.flags, 0666));
    struct stat status;
    if (!opened.IsOpen() || ::fstat(opened.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    std::FILE* stream = ::fdopen(opened.Get(), mode.forStream.c_str());
    if (stream != nullptr) opened.Release();
    return stream;
}

// The streams that are committed by each flush. Never destroyed: streams may be closed while the process ends.
struct CommittedStreams {
    std::mutex guard;
    std::unordered_set<const std::FILE*> streams;
};

CommittedStreams& TheCommittedStreams() {
    static CommittedStreams& committed = *new CommittedStreams;
    return committed;
}

// For every opened stream: it may have the address of one that was closed behind our back.
void SetCommitted(const std::FILE* stream, bool isCommitted) {
    CommittedStreams& committed = TheCommittedStreams();
    const std::lock_guard lock(committed.guard);
    if (isCommitted)
        committed.streams.insert(stream);
    else
        committed.streams.erase(stream);
}

bool IsCommitted(const std::FILE* stream) {
    CommittedStreams& committed = TheCommittedStreams();
    const std::lock_guard lock(committed.guard);
    return committed.streams.count(stream) != 0;
}

// A path or mode in the ANSI code page; empty when it does not convert or is too long for a path.
std::wstring Wide(const char* text) {
    wchar_t wide[kPathLimit];
    if (MultiByteToWideChar(kAnsiCodePage, text, -1, wide, static_cast<int>(kPathLimit)) == 0) return {};
    return wide;
}

}  // namespace

std::FILE* fopen(const char* path, const char* mode) { return _wfopen(Wide(path).c_str(), Wide(mode).c_str()); }

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
    const auto parsed = mode == nullptr ? std::nullopt : ParseMode(mode);
    const auto file = FindFileOnHost(path);
    if (!parsed || !file || !MayBeOpened(*file, *parsed)) return nullptr;
    std::FILE* stream = OpenStream(*file, *parsed);
    if (stream == nullptr) return nullptr;
    SetCommitted(stream, parsed->isCommitted);
    // What is committed later would be lost with the name of a file that storage does not know yet.
    if (parsed->isCommitted && !file->exists) CommitFolder(file->folder);
    return stream;
}

int fflush(std::FILE* stream) {
    if (stream == nullptr || std::fflush(stream) != 0) return EOF;
    return !IsCommitted(stream) || Commit(::fileno(stream)) ? 0 : EOF;
}

bool CutBack(std::FILE* stream, std::int64_t size) {
    ::__fpurge(stream);
    std::clearerr(stream);
    return ::ftruncate(::fileno(stream), static_cast<off_t>(size)) == 0;
}

int fclose(std::FILE* stream) {
    if (stream == nullptr) return EOF;
    SetCommitted(stream, false);
    return std::fclose(stream);
}

}  // namespace platform
