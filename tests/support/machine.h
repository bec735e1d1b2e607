// What tests ask of the machine they run on beyond the C++ library. One form a system: tests/support/posix,
// tests/support/windows. A test that makes sense on one system alone lies in a folder posix or windows beside
// the others.
#pragma once

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

// File names as UTF-8, on every system.
inline std::filesystem::path FromUtf8(const std::string& path) {
    return std::filesystem::path(std::u8string(path.begin(), path.end()));
}
inline std::string ToUtf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// A new, empty folder for temporary files; it throws when none can be made.
std::filesystem::path MakeTemporaryFolder();
// With everything in it; what cannot be removed stays.
void RemoveFolder(const std::filesystem::path& folder);
// A new, empty file that goes when it is closed; null when none can be made.
std::FILE* MakeTemporaryFile();
// As the system's own functions take it: also one of more characters than they usually do.
std::filesystem::path AnyLength(const std::filesystem::path& path);

// Since 1970, in UTC; `nanoseconds` in hundreds.
void SetLastWriteTime(const std::filesystem::path& file, std::int64_t seconds, long nanoseconds = 0);

std::filesystem::path ExecutableOnDisk();
// Whether the system runs that once more; not where an emulator is needed that it does not know of.
bool CanRunItself();

// Whether files can change places in one step in the folder for temporary files. Where they cannot, somebody
// who comes between the last look at a file and its renaming is overwritten.
bool FilesCanChangePlaces();

// Of the calling thread: the higher, the later its turn.
int NicenessOfThisThread();
extern const int kGreatestNiceness;

// Files, and whatever else the system counts as opened by this process.
std::size_t OpenHandles();
std::size_t RunningThreads();

// On a thread with a stack of 256 KiB, and waits for it; it throws when none can be made.
void RunOnSmallStack(const std::function<void()>& work);

// Wine answers otherwise than Windows here and there: tests of that skip.
bool RunsUnderWine();

// The variable that names the folder for temporary files.
extern const char* const kTemporaryFolderVariable;

void SetEnvironment(const char* name, const std::string& value);
void ClearEnvironment(const char* name);

// An environment variable while this lives; as it was before at the end.
class EnvironmentVariable {
 public:
    EnvironmentVariable(const char* name, const std::string& value);
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
    const char* m_name;
    std::optional<std::string> m_before;
};

// The process's time zone while this lives, in the notation of POSIX. Where a process has no zone of its own
// Active() is false, and the machine's zone stays.
class TimeZone {
 public:
    explicit TimeZone(const char* zone);
    ~TimeZone();
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    static bool Active();

 private:
    std::optional<EnvironmentVariable> m_variable;
};

// Text in a code page, by the machine's own converter; empty when it is no text of that page.
std::wstring WideByMachine(unsigned codePage, const std::string& bytes);
// Nothing when the page lacks a character.
std::optional<std::string> NarrowByMachine(unsigned codePage, const std::string& utf8);

// The seconds since 1970 by the system's exact clock. time() may still tell the second before: it is only set
// forward a few hundred times a second.
std::time_t Now();
// The calendar fields of a time, by the C library.
std::tm LocalTime(std::time_t time);
std::tm UtcTime(std::time_t time);
