// The descriptors behind streams. What is done to files and folders by name: platform/windows/file_names.cpp.
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "platform/stream_on_system.h"
#include "platform/windows/host_path.h"

namespace platform {

namespace {

int FlagsOf(const StreamMode& mode) {
    int flags = _O_BINARY | _O_NOINHERIT;
    flags |= mode.reads && mode.writes ? _O_RDWR : mode.writes ? _O_WRONLY : _O_RDONLY;
    if (mode.creates) flags |= _O_CREAT;
    if (mode.truncates) flags |= _O_TRUNC;
    if (mode.appends) flags |= _O_APPEND;
    if (mode.isExclusive) flags |= _O_EXCL;
    return flags;
}

}  // namespace

int OpenDescriptor(const wchar_t* path, const StreamMode& mode, bool& isNew) {
    const auto file = FindFileOnHost(path);
    if (!file) return -1;
    const auto existing = LookAt(file->Text());
    if (existing ? existing->isFolder || (mode.writes && existing->isReadOnly) : !mode.creates) return -1;
    isNew = !existing;
    return ::_wopen(file->Text().c_str(), FlagsOf(mode), _S_IREAD | _S_IWRITE);
}

std::FILE* StreamOf(int descriptor, const StreamMode& mode) {
    std::FILE* stream = ::_fdopen(descriptor, mode.forRuntime);
    if (stream == nullptr) ::_close(descriptor);
    return stream;
}

bool CommitContent(std::FILE* stream) { return ::_commit(::_fileno(stream)) == 0; }

// The file system writes its own journal for names.
void CommitName(const wchar_t*) {}

std::optional<FileState> StateOf(std::FILE* stream) {
    BY_HANDLE_FILE_INFORMATION status;
    if (stream == nullptr) return std::nullopt;
    const auto file = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
    if (!::GetFileInformationByHandle(file, &status)) return std::nullopt;
    return StateIn(status);
}

// The runtime forgets what it could not write by itself.
bool DropAndCut(std::FILE* stream, std::int64_t size) { return ::_chsize_s(::_fileno(stream), size) == 0; }

}  // namespace platform
