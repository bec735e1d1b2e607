#include "host/text/descriptor.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <random>
#include <system_error>

#include "host/text/utf8_path.h"
#include "host/windows/wide_text.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr std::size_t kMostAtOnce = 1 << 20;
constexpr int kMostTries = 1000;
constexpr std::string_view kPlaceholder = "XXXXXX";

void FillIn(std::string& name, std::size_t place) {
    constexpr std::string_view kSigns = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    for (std::size_t i = 0; i < kPlaceholder.size(); ++i) name[place + i] = kSigns[random() % kSigns.size()];
}

// Tries names until `make` does not find its own taken.
template <typename Make>
bool MakeUnderNewName(std::string& name, Make make) {
    const std::size_t place = name.rfind(kPlaceholder);
    for (int tries = 0; tries < kMostTries; ++tries) {
        FillIn(name, place);
        if (make()) return true;
        if (errno != EEXIST) return false;
    }
    return false;
}

}  // namespace

// The system says of a folder no more than that access is denied.
int OpenToRead(const std::string& path) {
    const fs::path file = PathOf(path);
    const int descriptor = _wopen(file.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
    const int problem = errno;
    std::error_code unknown;
    errno = descriptor < 0 && fs::is_directory(file, unknown) ? EISDIR : problem;
    return descriptor;
}

int OpenToWrite(const std::string& path) {
    return _wopen(WideText(path).c_str(), _O_WRONLY | _O_BINARY | _O_NOINHERIT);
}

std::ptrdiff_t ReadSome(int descriptor, char* buffer, std::size_t size) {
    return _read(descriptor, buffer, static_cast<unsigned>(std::min(size, kMostAtOnce)));
}

int MakeNewFile(std::string& name) {
    constexpr int kHow = _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
    int descriptor = -1;
    MakeUnderNewName(name, [&] {
        descriptor = _wopen(WideText(name).c_str(), kHow, _S_IREAD | _S_IWRITE);
        return descriptor >= 0;
    });
    return descriptor;
}

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto size = static_cast<unsigned>(std::min(text.size(), kMostAtOnce));
        const int count = _write(descriptor, text.data(), size);
        if (count <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool Commit(int descriptor) { return _commit(descriptor) == 0; }

void CloseFile(int descriptor) { _close(descriptor); }

bool MakeNewFolder(std::string& name) {
    return MakeUnderNewName(name, [&name] { return _wmkdir(WideText(name).c_str()) == 0; });
}

}  // namespace host
