#include "host/text/output_file.h"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "host/text/descriptor.h"
#include "host/text/file_place.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr int kStandardOutput = 1, kStandardError = 2;
constexpr std::size_t kPiece = 65536;

bool IsFileOrNothing(const std::string& path) {
    std::error_code unreadable;
    const fs::file_status status = fs::status(PathOf(path), unreadable);
    return !fs::exists(status) || fs::is_regular_file(status);
}

// Where the links at the end of the path lead, be it to nothing. A path in a circle stays one.
fs::path BehindLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code problem;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, problem); ++links)
        path = path.parent_path() / fs::read_symlink(path, problem);
    return path;
}

}  // namespace

int MakeTemporary(const fs::path& folder, std::string& path) {
    path = Utf8Of(folder / (".qtrace-" + std::to_string(ProcessNumber()) + "-XXXXXX.tmp"));
    return MakeNewFile(path);
}

OutputFile::OutputFile(const std::string& path, bool overwrite) : m_path(path), m_overwrite(overwrite) {
    std::error_code unreadable;
    if (path == "-") {
        m_descriptor = kStandardOutput;
    } else if (fs::is_directory(PathOf(path), unreadable)) {
        m_problem = path + " is a folder";
    } else if (!IsFileOrNothing(path)) {
        m_descriptor = OpenToWrite(path);
        if (m_descriptor < 0) Remember("opened");
    } else if (fs::exists(PathOf(path), unreadable) && !overwrite) {
        m_problem = path + " exists already; --force replaces it";
    } else {
        OpenTemporary();
    }
}

// A file behind a symbolic link is replaced where it lies; the link stays. The name is short: the file's own,
// with something behind it, may be longer than names can be.
void OutputFile::OpenTemporary() {
    const fs::path target = BehindLinks(PathOf(m_path));
    m_path = Utf8Of(target);
    if (std::error_code none; fs::is_symlink(target, none)) {
        errno = ELOOP;
        return Remember("written");
    }
    m_descriptor = MakeTemporary(target.parent_path(), m_temporary);
    if (m_descriptor < 0) m_temporary.clear();
    if (m_descriptor < 0 || !TakeRightsOf(m_path, m_descriptor)) Remember("written");
}

// A file that is open cannot be removed everywhere.
OutputFile::~OutputFile() {
    if (m_descriptor > kStandardError) CloseFile(m_descriptor);
    std::error_code ignored;
    if (!m_temporary.empty()) fs::remove(PathOf(m_temporary), ignored);
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
    if (!m_problem && !WriteAll(m_descriptor, m_waiting)) Remember("written");
    m_waiting.clear();
}

std::optional<std::string> OutputFile::Finish() {
    WriteOut();
    if (!m_problem && !m_temporary.empty()) TakePlace();
    return m_problem;
}

void OutputFile::TakePlace() {
    if (!Commit(m_descriptor)) return Remember("written");
    CloseFile(std::exchange(m_descriptor, -1));
    if (const std::string why = MoveToPlace(m_temporary, m_path, m_overwrite); !why.empty())
        m_problem = m_path + " cannot be put in its place: " + why;
    else
        m_temporary.clear();
}

std::optional<std::string> ReplaceContent(const fs::path& file, std::string_view text) {
    const fs::path folder = BehindLinks(file).parent_path();
    std::error_code problem;
    if (!folder.empty()) fs::create_directories(folder, problem);
    if (problem) return "the folder " + Utf8Of(folder) + " cannot be made: " + problem.message();
    OutputFile output(Utf8Of(file), true);
    output.Write(text);
    return output.Finish();
}

}  // namespace host
