#include "host/text/output_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 65536;

bool IsFileOrNothing(const std::string& path) {
    std::error_code unreadable;
    const fs::file_status status = fs::status(path, unreadable);
    return !fs::exists(status) || fs::is_regular_file(status);
}

// The rights that a new file has without our asking.
mode_t UsualRights() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
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
    fsync(descriptor);
    close(descriptor);
}

}  // namespace

OutputFile::OutputFile(const std::string& path, bool overwrite) : m_path(path), m_overwrite(overwrite) {
    std::error_code unreadable;
    if (path == "-") {
        m_descriptor = STDOUT_FILENO;
    } else if (fs::is_directory(path, unreadable)) {
        m_problem = path + " is a folder";
    } else if (!IsFileOrNothing(path)) {
        m_descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        if (m_descriptor < 0) Remember("opened");
    } else if (fs::exists(path, unreadable) && !overwrite) {
        m_problem = path + " exists already; --force replaces it";
    } else {
        OpenTemporary();
    }
}

// A file behind a symbolic link is replaced where it lies; the link stays.
void OutputFile::OpenTemporary() {
    std::error_code none;
    if (fs::is_symlink(m_path, none)) m_path = fs::weakly_canonical(m_path, none).string();
    const fs::path target(m_path);
    m_temporary = (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
    m_descriptor = mkostemp(m_temporary.data(), O_CLOEXEC);
    if (m_descriptor >= 0) {
        fchmod(m_descriptor, UsualRights());
    } else {
        Remember("written");
        m_temporary.clear();
    }
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
        const ssize_t count = write(m_descriptor, rest.data(), rest.size());
        if (count >= 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
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
    if (fsync(m_descriptor) != 0) return Remember("written");
    const bool moved =
        m_overwrite ? rename(m_temporary.c_str(), m_path.c_str()) == 0 : MoveToFreeName(m_temporary, m_path);
    if (!moved) return Remember("put in its place");
    m_temporary.clear();
    CommitFolder(m_path);
}

}  // namespace host
