// The descriptors behind streams. What is done to files and folders by name: platform/windows/file_names.cpp.
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "platform/stream_on_system.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/host_path.h"
#include "platform/windows/persist.h"

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

// The runtime would keep others from moving, exchanging and deleting what is only read.
int OpenToRead(const std::wstring& path) {
    HANDLE opened = INVALID_HANDLE_VALUE;
    Persist([&] {
        opened = ::CreateFileW(path.c_str(), GENERIC_READ, kSharedWithAll, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr);
        return opened != INVALID_HANDLE_VALUE;
    });
    if (opened == INVALID_HANDLE_VALUE) return -1;
    const int descriptor =
        ::_open_osfhandle(reinterpret_cast<std::intptr_t>(opened), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
    if (descriptor < 0) ::CloseHandle(opened);
    return descriptor;
}

}  // namespace

int OpenDescriptor(const wchar_t* path, const StreamMode& mode, bool& isNew) {
    const auto file = FindFileOnHost(path);
    if (!file) return -1;
    const auto existing = LookAt(file->Text());
    if (existing ? existing->isFolder || (mode.writes && existing->isReadOnly) : !mode.creates) return -1;
    isNew = !existing;
    if (!mode.writes) return OpenToRead(file->Text());
    return ::_wopen(file->Text().c_str(), FlagsOf(mode), _S_IREAD | _S_IWRITE);
}

std::FILE* StreamOf(int descriptor, const StreamMode& mode) {
    std::FILE* stream = ::_fdopen(descriptor, mode.forRuntime);
    if (stream == nullptr) ::_close(descriptor);
    return stream;
}

bool CommitContent(std::FILE* stream) { return ::_commit(::_fileno(stream)) == 0; }

void CommitName(const wchar_t* path) {
    if (const auto file = FindFileOnHost(path)) Commit(file->Text());
}

std::optional<FileState> StateOf(std::FILE* stream) {
    BY_HANDLE_FILE_INFORMATION status;
    if (stream == nullptr) return std::nullopt;
    const auto file = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
    if (!::GetFileInformationByHandle(file, &status)) return std::nullopt;
    return StateIn(status);
}

// The runtime has no call to forget what it holds back; an empty buffer has these two fields so.
bool DropAndCut(std::FILE* stream, std::int64_t size) {
    stream->_ptr = stream->_base;
    stream->_cnt = 0;
    return ::_chsize_s(::_fileno(stream), size) == 0;
}

}  // namespace platform
