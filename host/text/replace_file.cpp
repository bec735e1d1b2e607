#include "host/text/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr mode_t kUsualRights = 0644;

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

mode_t RightsOf(const fs::path& file) {
    struct stat existing {};
    return ::stat(file.c_str(), &existing) == 0 ? existing.st_mode & 07777u : kUsualRights;
}

// The error number; 0 when all went well.
int FillAndPlace(int descriptor, const std::string& beside, const fs::path& target, const std::string& text) {
    const bool filled =
        WriteAll(descriptor, text) && ::fchmod(descriptor, RightsOf(target)) == 0 && ::fsync(descriptor) == 0;
    const int problem = filled ? 0 : errno;
    ::close(descriptor);
    if (problem == 0 && ::rename(beside.c_str(), target.c_str()) == 0) return 0;
    const int placing = problem == 0 ? errno : problem;
    ::unlink(beside.c_str());
    return placing;
}

}  // namespace

std::optional<std::string> ReplaceFile(const fs::path& file, const std::string& text) {
    std::error_code problem;
    const fs::path target = fs::weakly_canonical(fs::absolute(file), problem);
    if (problem) return file.string() + ": " + problem.message();
    fs::create_directories(target.parent_path(), problem);
    if (problem) return "the folder " + target.parent_path().string() + " cannot be made: " + problem.message();
    std::string beside = target.string() + ".XXXXXX";
    const int descriptor = ::mkostemp(beside.data(), O_CLOEXEC);
    const int error = descriptor < 0 ? errno : FillAndPlace(descriptor, beside, target, text);
    if (error == 0) return std::nullopt;
    return target.string() + " could not be written: " + std::strerror(error) + "; nothing was changed";
}

}  // namespace host
