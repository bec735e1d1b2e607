// Loaded in front of the C library (LD_PRELOAD) into a program under test. It writes down everything that the
// program does to the files below one folder, in the order in which the system was told, and can let one call
// fail. What is written down: tests/power/disk_log.h. Linux only.
//
//   QTRACE_SHIM_ROOT    the folder; calls on other files pass untouched
//   QTRACE_SHIM_LOG     where to write the log; none when unset
//   QTRACE_SHIM_REFUSE  names ending in this text cannot be opened
//   QTRACE_SHIM_FAULT   "N ERRNO": call number N, from 1 on, fails with this error; "N short": a write is cut
//   short QTRACE_SHIM_COUNT   file that gets the number of calls at the end, and the name of the call that
//   failed
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>

#include "tests/power/disk_log.h"

namespace {

template <typename Function>
Function Real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

#define REAL(name) static const auto real = Real<decltype(&::name)>(#name)

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// The program under test runs on one thread.
struct Shim {
    std::string root = Variable("QTRACE_SHIM_ROOT");
    std::string refuse = Variable("QTRACE_SHIM_REFUSE");
    int log = -1;
    long calls = 0;
    long faultAt = 0;
    int fault = 0;    // the error; 0: a short write
    long faults = 1;  // how many calls in a row
    std::string failed;
    int nextFile = 1;
    std::map<std::string, int> names;  // of the files below the root, as they are now
    std::map<int, int> files;          // by descriptor
    std::map<int, std::string> folders;
    std::map<FILE*, int> streams;

    Shim() {
        const std::string path = Variable("QTRACE_SHIM_LOG");
        if (!path.empty())
            log = static_cast<int>(
                syscall(SYS_openat, AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
        const std::string wanted = Variable("QTRACE_SHIM_FAULT");
        char* end = nullptr;
        faultAt = std::strtol(wanted.c_str(), &end, 10);
        fault = static_cast<int>(std::strtol(end, &end, 10));
        faults = std::max(std::strtol(end, nullptr, 10), 1L);
    }
};

Shim& The() {
    static Shim& shim = *new Shim;
    return shim;
}

void Log(char what, int file, long number, std::string_view text, std::string_view more = {}) {
    Shim& shim = The();
    if (shim.log < 0) return;
    REAL(write);
    const std::string line = disk_log::Line(what, file, number, text, more);
    if (real(shim.log, line.data(), line.size()) != static_cast<ssize_t>(line.size())) std::abort();
}

bool IsOurs(const char* path) {
    return !The().root.empty() && std::string_view(path).starts_with(The().root + '/');
}
bool IsOurs(int descriptor) {
    return The().files.count(descriptor) != 0 || The().folders.count(descriptor) != 0;
}

// Counts a call; true when it is one that is to fail.
bool Fails(const char* name) {
    Shim& shim = The();
    if (++shim.calls < shim.faultAt || shim.calls >= shim.faultAt + shim.faults) return false;
    if (shim.calls == shim.faultAt) shim.failed = name;
    if (shim.fault == 0) return false;
    errno = shim.fault;
    return true;
}

bool IsShort() { return The().calls == The().faultAt && The().fault == 0; }

int FileNamed(const std::string& path) {
    auto& names = The().names;
    const auto found = names.find(path);
    if (found != names.end()) return found->second;
    return names[path] = The().nextFile++;
}

void Opened(int descriptor, const std::string& path, bool isNew, int flags) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) return;
    if (S_ISDIR(status.st_mode)) {
        The().folders[descriptor] = path;
        return;
    }
    if (isNew) The().names.erase(path);
    const bool wasKnown = The().names.count(path) != 0;
    const int file = FileNamed(path);
    The().files[descriptor] = file;
    if (isNew) Log(disk_log::kCreate, file, 0, path);
    if (!isNew && !wasKnown) Log(disk_log::kExisting, file, 0, path);
    if (!isNew && (flags & O_TRUNC) != 0) Log(disk_log::kTruncate, file, 0, "");
}

int Open(const char* path, int flags, mode_t mode) {
    REAL(open);
    if (!IsOurs(path)) return real(path, flags, mode);
    if (Fails("open")) return -1;
    const std::string text = path;
    if (!The().refuse.empty() && text.ends_with(The().refuse)) {
        errno = EACCES;
        return -1;
    }
    const bool isNew = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
    const int descriptor = real(path, flags, mode);
    if (descriptor >= 0)
        Opened(descriptor, text.ends_with('/') ? text.substr(0, text.size() - 1) : text, isNew, flags);
    return descriptor;
}

ssize_t Write(int descriptor, const void* bytes, size_t size) {
    REAL(write);
    const auto file = The().files.find(descriptor);
    if (file == The().files.end()) return real(descriptor, bytes, size);
    if (Fails("write")) return -1;
    if (IsShort() && size > 1) size /= 2;
    const off_t offset = lseek(descriptor, 0, SEEK_CUR);
    const ssize_t written = real(descriptor, bytes, size);
    if (written > 0)
        Log(disk_log::kWrite, file->second, offset,
            {static_cast<const char*>(bytes), static_cast<size_t>(written)});
    return written;
}

// What a stream does with its descriptor: the C library's own streams would go past us.
ssize_t StreamRead(void* cookie, char* bytes, size_t size) {
    if (Fails("read")) return -1;
    return read(static_cast<int>(reinterpret_cast<intptr_t>(cookie)), bytes, size);
}
ssize_t StreamWrite(void* cookie, const char* bytes, size_t size) {
    const int descriptor = static_cast<int>(reinterpret_cast<intptr_t>(cookie));
    size_t done = 0;
    while (done < size) {  // as the C library's streams do: a part written is not the end
        const ssize_t written = Write(descriptor, bytes + done, size - done);
        if (written <= 0) return done == 0 ? 0 : static_cast<ssize_t>(done);
        done += static_cast<size_t>(written);
    }
    return static_cast<ssize_t>(done);
}
int StreamSeek(void* cookie, off64_t* offset, int from) {
    if (Fails("lseek")) return -1;
    const off_t place = lseek(static_cast<int>(reinterpret_cast<intptr_t>(cookie)), *offset, from);
    if (place < 0) return -1;
    *offset = place;
    return 0;
}
int StreamClose(void* cookie) { return close(static_cast<int>(reinterpret_cast<intptr_t>(cookie))); }

int Sync(int descriptor, const char* name, int (*real)(int)) {
    if (!IsOurs(descriptor)) return real(descriptor);
    if (Fails(name)) return -1;
    const int result = real(descriptor);
    const auto folder = The().folders.find(descriptor);
    if (folder != The().folders.end())
        Log(disk_log::kSyncFolder, 0, 0, folder->second);
    else
        Log(disk_log::kSync, The().files[descriptor], 0, "");
    return result;
}

void Renamed(const char* from, const char* to) {
    if (The().names.count(from) == 0) Log(disk_log::kExisting, FileNamed(from), 0, from);
    const int file = FileNamed(from);
    The().names.erase(from);
    The().names[to] = file;
    Log(disk_log::kRename, file, 0, from, to);
}

struct AtTheEnd {
    ~AtTheEnd() {
        const std::string path = Variable("QTRACE_SHIM_COUNT");
        const std::string text = std::to_string(The().calls) + ' ' + The().failed + '\n';
        const int file = path.empty() ? -1
                                      : Real<int (*)(const char*, int, ...)>("open")(
                                            path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (file < 0) return;
        if (Real<decltype(&::write)>("write")(file, text.data(), text.size()) < 0) std::abort();
        close(file);
    }
} s_atTheEnd;

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(more, int)) : 0;
    va_end(more);
    return Open(path, flags, mode);
}

int close(int descriptor) {
    REAL(close);
    The().files.erase(descriptor);
    The().folders.erase(descriptor);
    return real(descriptor);
}

ssize_t write(int descriptor, const void* bytes, size_t size) { return Write(descriptor, bytes, size); }

FILE* fdopen(int descriptor, const char* mode) {
    REAL(fdopen);
    if (!IsOurs(descriptor)) return real(descriptor, mode);
    if (Fails("fdopen")) return nullptr;
    const cookie_io_functions_t functions = {StreamRead, StreamWrite, StreamSeek, StreamClose};
    FILE* stream = fopencookie(reinterpret_cast<void*>(static_cast<intptr_t>(descriptor)), mode, functions);
    The().streams[stream] = descriptor;
    return stream;
}

// Streams of ours read byte by byte without a buffer, where the C library's own read as much as is asked for.
int setvbuf(FILE* stream, char* buffer, int mode, size_t size) noexcept {
    REAL(setvbuf);
    return The().streams.count(stream) != 0 ? 0 : real(stream, buffer, mode, size);
}

int fclose(FILE* stream) {
    REAL(fclose);
    const int result = real(stream);
    The().streams.erase(stream);
    return result;
}

int fileno(FILE* stream) noexcept {
    REAL(fileno);
    const auto found = The().streams.find(stream);
    return found == The().streams.end() ? real(stream) : found->second;
}

int fdatasync(int descriptor) {
    REAL(fdatasync);
    return Sync(descriptor, "fdatasync", real);
}

int fsync(int descriptor) {
    REAL(fsync);
    return Sync(descriptor, "fsync", real);
}

int ftruncate(int descriptor, off_t size) noexcept {
    REAL(ftruncate);
    if (!IsOurs(descriptor)) return real(descriptor, size);
    if (Fails("ftruncate")) return -1;
    const int result = real(descriptor, size);
    if (result == 0) Log(disk_log::kTruncate, The().files[descriptor], size, "");
    return result;
}

int rename(const char* from, const char* to) noexcept {
    REAL(rename);
    if (!IsOurs(from)) return real(from, to);
    if (Fails("rename")) return -1;
    const int result = real(from, to);
    if (result == 0) Renamed(from, to);
    return result;
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    REAL(renameat2);
    if (!IsOurs(from)) return real(fromFolder, from, toFolder, to, flags);
    if (Fails("renameat2")) return -1;
    const int result = real(fromFolder, from, toFolder, to, flags);
    if (result == 0) Renamed(from, to);
    return result;
}

int unlink(const char* path) noexcept {
    REAL(unlink);
    if (!IsOurs(path)) return real(path);
    if (Fails("unlink")) return -1;
    const int result = real(path);
    if (result != 0) return result;
    Log(disk_log::kUnlink, 0, 0, path);
    The().names.erase(path);
    return result;
}

int mkdir(const char* path, mode_t mode) noexcept {
    REAL(mkdir);
    if (!IsOurs(path)) return real(path, mode);
    if (Fails("mkdir")) return -1;
    const int result = real(path, mode);
    if (result == 0) Log(disk_log::kFolder, 0, 0, path);
    return result;
}

int stat(const char* path, struct stat* status) noexcept {
    REAL(stat);
    return IsOurs(path) && Fails("stat") ? -1 : real(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
    REAL(lstat);
    return IsOurs(path) && Fails("lstat") ? -1 : real(path, status);
}

char* realpath(const char* path, char* resolved) noexcept {
    REAL(realpath);
    return IsOurs(path) && Fails("realpath") ? nullptr : real(path, resolved);
}

// Called by the program under test, which finds it when it is there.
void qtrace_shim_mark(const char* text) { Log(disk_log::kMark, 0, 0, text); }

}  // extern "C"
