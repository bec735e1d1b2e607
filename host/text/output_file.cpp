#include "host/text/output_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <tuple>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 65536;

// Calls it again as long as a signal comes in between.
template <typename Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

bool IsFileOrNothing(const std::string& path) {
    std::error_code unreadable;
    const fs::file_status status = fs::status(path, unreadable);
    return !fs::exists(status) || fs::is_regular_file(status);
}

// Owner and rights of the file that is replaced; the rights that a new file has without our asking. Another's
// file that only the superuser could give away becomes ours.
bool TakeRightsOf(const std::string& file, int descriptor) {
    struct stat existing {};
    if (stat(file.c_str(), &existing) == 0) {
        std::ignore = fchown(descriptor, existing.st_uid, existing.st_gid);
        return fchmod(descriptor, existing.st_mode & 07777u) == 0;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return fchmod(descriptor, 0666 & ~mask) == 0;
}

// Where the links at the end of the path lead, be it to nothing. A path in a circle stays one.
fs::path BehindLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code problem;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, problem); ++links)
        path = path.parent_path() / fs::read_symlink(path, problem);
    return path;
}

// Whether the new name is taken is decided by the system in the same step as the move.
bool MoveToFreeName(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return link(from.c_str(), to.c_str()) == 0 && unlink(from.c_str()) == 0;
}

void CommitFolder(const std::string& file) {
    const std::string folder = fs::absolute(file).parent_path().string();
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    Uninterrupted([descriptor] { return fsync(descriptor); });
    close(descriptor);
}

}  // namespace

int MakeTemporary(const fs::path& folder, std::string& path) {
    constexpr std::string_view kEnd = ".tmp";
    path = (folder / (".qtrace-" + std::to_string(getpid()) + "-XXXXXX")).string().append(kEnd);
    return mkostemps(path.data(), static_cast<int>(kEnd.size()), O_CLOEXEC);
}

OutputFile::OutputFile(const std::string& path, bool overwrite) : m_path(path), m_overwrite(overwrite) {
    std::error_code unreadable;
    if (path == "-") {
        m_descriptor = STDOUT_FILENO;
    } else if (fs::is_directory(path, unreadable)) {
        m_problem = path + " is a folder";
    } else if (!IsFileOrNothing(path)) {
        m_descriptor = Uninterrupted([&] { return open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); });
        if (m_descriptor < 0) Remember("opened");
    } else if (fs::exists(path, unreadable) && !overwrite) {
        m_problem = path + " exists already; --force replaces it";
    } else {
        OpenTemporary();
    }
}

// A file behind a symbolic link is replaced where it lies; the link stays. The name is short: the file's own,
// with something behind it, may be longer than names can be.
void OutputFile::OpenTemporary() {
    const fs::path target = BehindLinks(m_path);
    m_path = target.string();
    if (std::error_code none; fs::is_symlink(target, none)) {
        errno = ELOOP;
        return Remember("written");
    }
    m_descriptor = MakeTemporary(target.parent_path(), m_temporary);
    if (m_descriptor < 0) m_temporary.clear();
    if (m_descriptor < 0 || !TakeRightsOf(m_path, m_descriptor)) Remember("written");
}

OutputFile::~OutputFile() {
    if (m_descriptor > STDERR_FILENO) close(m_descriptor);
    if (!m_temporary.empty()) unlink(m_temporary.c_str());
}

void OutputFile::Remember(const char* what) {
    const std::string name = m_path == "-" ? "standard output" : m_path;
    if (!m_problem) m_problem = name + " cannot be " + what + ": " + std::strerror(errno);
}

bool OutputFile::Write(std::string_view text) {
    m_waiting += text;
    if (m_waiting.size() >= kPiece) WriteOut();
    return !m_problem;
}

void OutputFile::WriteOut() {
    for (std::string_view rest = m_waiting; !rest.empty() && !m_problem;) {
        const ssize_t count = Uninterrupted([&] { return write(m_descriptor, rest.data(), rest.size()); });
        if (count >= 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else
            Remember("written");
    }
    m_waiting.clear();
}

std::optional<std::string> OutputFile::Finish() {
    WriteOut();
    if (!m_problem && !m_temporary.empty()) TakePlace();
    return m_problem;
}

void OutputFile::TakePlace() {
    if (Uninterrupted([this] { return fsync(m_descriptor); }) != 0) return Remember("written");
    const bool moved =
        m_overwrite ? rename(m_temporary.c_str(), m_path.c_str()) == 0 : MoveToFreeName(m_temporary, m_path);
    if (!moved) return Remember("put in its place");
    m_temporary.clear();
    CommitFolder(m_path);
}

std::optional<std::string> ReplaceFile(const fs::path& file, std::string_view text) {
    const fs::path folder = BehindLinks(file).parent_path();
    std::error_code problem;
    if (!folder.empty()) fs::create_directories(folder, problem);
    if (problem) return "the folder " + folder.string() + " cannot be made: " + problem.message();
    OutputFile output(file.string(), true);
    output.Write(text);
    return output.Finish();
}

}  // namespace host
