// The descriptors behind streams. What is done to files and folders by name: platform/posix/file_names.cpp.
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"
#include "platform/posix/file_kind.h"
#include "platform/posix/host_path.h"
#include "platform/stream_on_system.h"

namespace platform {

namespace {

int FlagsOf(const StreamMode& mode) {
    int flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    flags |= mode.reads && mode.writes ? O_RDWR : mode.writes ? O_WRONLY : O_RDONLY;
    if (mode.creates) flags |= O_CREAT;
    if (mode.truncates) flags |= O_TRUNC;
    if (mode.appends) flags |= O_APPEND;
    if (mode.isExclusive) flags |= O_EXCL;
    return flags;
}

// Before it is opened: opening a fifo would wait for its other end, opening a device may act on it.
bool MayBeOpened(const HostPath& file, const StreamMode& mode) {
    struct stat status;
    if (!file.exists || ::stat(file.Text().c_str(), &status) != 0) return mode.creates;
    return S_ISREG(status.st_mode) && !(mode.writes && IsReadOnly(status));
}

}  // namespace

// The file may have been exchanged since it was looked at, so what was opened is looked at again.
int OpenDescriptor(const wchar_t* path, const StreamMode& mode, bool& isNew) {
    const auto file = FindFileOnHost(path);
    if (!file || !MayBeOpened(*file, mode)) return -1;
    Descriptor opened(::open(file->Text().c_str(), FlagsOf(mode), 0666));
    struct stat status;
    if (!opened.IsOpen() || ::fstat(opened.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    isNew = !file->exists;
    return opened.Release();
}

std::FILE* StreamOf(int descriptor, const StreamMode& mode) {
    Descriptor opened(descriptor);
    std::FILE* stream = ::fdopen(opened.Get(), mode.forRuntime);
    if (stream != nullptr) opened.Release();
    return stream;
}

bool CommitContent(std::FILE* stream) { return Commit(::fileno(stream)); }

void CommitName(const wchar_t* path) {
    if (const auto file = FindFileOnHost(path)) CommitFolder(file->folder);
}

std::optional<FileState> StateOf(std::FILE* stream) {
    struct stat status;
    if (stream == nullptr || ::fstat(::fileno(stream), &status) != 0) return std::nullopt;
    return StateIn(status);
}

bool DropAndCut(std::FILE* stream, std::int64_t size) {
    ::__fpurge(stream);
    return ::ftruncate(::fileno(stream), static_cast<off_t>(size)) == 0;
}

}  // namespace platform
