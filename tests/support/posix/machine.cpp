#include "tests/support/machine.h"

#include <fcntl.h>
#include <iconv.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <stdexcept>

namespace fs = std::filesystem;

const char* const kTemporaryFolderVariable = "TMPDIR";

fs::path MakeTemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "qtrace-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
    return pattern;
}

void RemoveFolder(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::FILE* MakeTemporaryFile() { return std::tmpfile(); }

fs::path AnyLength(const fs::path& path) { return path; }

void SetLastWriteTime(const fs::path& file, std::int64_t seconds, long nanoseconds) {
    const timespec time = {static_cast<std::time_t>(seconds), nanoseconds};
    const timespec times[] = {time, time};
    if (utimensat(AT_FDCWD, file.c_str(), times, 0) != 0)
        throw std::runtime_error("cannot set the time of " + file.string());
}

const int kGreatestNiceness = 19;

int NicenessOfThisThread() { return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())); }

namespace {

std::size_t EntriesIn(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

}  // namespace

std::size_t OpenHandles() { return EntriesIn("/proc/self/fd"); }

std::size_t RunningThreads() { return EntriesIn("/proc/self/task"); }

void RunOnSmallStack(const std::function<void()>& work) {
    const auto body = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    pthread_attr_t small;
    pthread_t thread;
    pthread_attr_init(&small);
    const bool isRunning =
        pthread_attr_setstacksize(&small, 256 * 1024) == 0 &&
        pthread_create(&thread, &small, body, const_cast<std::function<void()>*>(&work)) == 0;
    pthread_attr_destroy(&small);
    if (!isRunning) throw std::runtime_error("no thread with a small stack");
    pthread_join(thread, nullptr);
}

bool CanRunItself() {
    const std::string program = ExecutableOnDisk().string();
    const pid_t child = fork();
    if (child == 0) {
        close(STDOUT_FILENO);
        execl(program.c_str(), program.c_str(), "--gtest_list_tests", nullptr);
        _exit(1);
    }
    int status = 1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

bool RunsUnderWine() { return false; }

bool FilesCanChangePlaces() {
    const fs::path folder = MakeTemporaryFolder();
    const fs::path a = folder / "a", b = folder / "b";
    for (const fs::path& file : {a, b}) close(open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const bool can = renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
    RemoveFolder(folder);
    return can;
}

fs::path ExecutableOnDisk() { return fs::read_symlink("/proc/self/exe"); }

void SetEnvironment(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

void ClearEnvironment(const char* name) { unsetenv(name); }

TimeZone::TimeZone(const char* zone) {
    m_variable.emplace("TZ", zone);
    tzset();
}

TimeZone::~TimeZone() {
    m_variable.reset();
    tzset();
}

bool TimeZone::Active() { return true; }

namespace {

// Nothing when the converter refuses any of it.
std::optional<std::string> Converted(std::string text, const std::string& to, const std::string& from) {
    const iconv_t converter = iconv_open(to.c_str(), from.c_str());
    if (converter == iconv_t(-1)) throw std::runtime_error("no converter from " + from + " to " + to);
    std::string out(text.size() * 4 + 4, '\0');
    char *in = text.data(), *next = out.data();
    std::size_t left = text.size(), room = out.size();
    const bool isConverted = iconv(converter, &in, &left, &next, &room) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    out.resize(out.size() - room);
    return isConverted ? std::optional(out) : std::nullopt;
}

std::string PageName(unsigned codePage) {
    return codePage == 65001 ? "UTF-8" : "CP" + std::to_string(codePage);
}

}  // namespace

std::wstring WideByMachine(unsigned codePage, const std::string& bytes) {
    const std::string units = Converted(bytes, "UTF-16LE", PageName(codePage)).value_or("");
    std::wstring wide;
    for (std::size_t i = 0; i < units.size(); i += 2)
        wide += static_cast<wchar_t>(static_cast<unsigned char>(units[i]) |
                                     static_cast<unsigned char>(units[i + 1]) << 8);
    return wide;
}

std::optional<std::string> NarrowByMachine(unsigned codePage, const std::string& utf8) {
    return Converted(utf8, PageName(codePage), "UTF-8");
}

std::tm LocalTime(std::time_t time) {
    std::tm fields{};
    tzset();
    localtime_r(&time, &fields);
    return fields;
}

std::tm UtcTime(std::time_t time) {
    std::tm fields{};
    gmtime_r(&time, &fields);
    return fields;
}
