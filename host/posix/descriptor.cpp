#include "host/text/descriptor.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>

namespace host {
namespace {

// Calls it again as long as a signal comes in between.
template <typename Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

}  // namespace

int OpenToRead(const std::string& path) { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); }

int OpenToWrite(const std::string& path) {
    return Uninterrupted([&path] { return open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); });
}

std::ptrdiff_t ReadSome(int descriptor, char* buffer, std::size_t size) {
    return read(descriptor, buffer, size);
}

int MakeNewFile(std::string& name) {
    const std::size_t behind = name.size() - name.rfind("XXXXXX") - 6;
    return mkostemps(name.data(), static_cast<int>(behind), O_CLOEXEC);
}

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = Uninterrupted([&] { return write(descriptor, text.data(), text.size()); });
        if (count < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool Commit(int descriptor) {
    return Uninterrupted([descriptor] { return fsync(descriptor); }) == 0;
}

void CloseFile(int descriptor) { close(descriptor); }

bool MakeNewFolder(std::string& name) { return mkdtemp(name.data()) != nullptr; }

}  // namespace host
