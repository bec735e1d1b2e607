#include "tests/support/machine.h"

#include <windows.h>

#include <tlhelp32.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <stdexcept>

namespace fs = std::filesystem;

const char* const kTemporaryFolderVariable = "TMP";

fs::path MakeTemporaryFolder() {
    static std::atomic<unsigned> count = 0;
    const std::wstring name = L"qt" + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(count++);
    const fs::path folder = fs::temp_directory_path() / name;
    RemoveFolder(folder);  // of an earlier process of this number
    if (!CreateDirectoryW(folder.c_str(), nullptr)) throw std::runtime_error("no temporary folder can be made");
    return folder;
}

// The C++ library's own removal stops at paths of 260 characters, and at read-only files.
void RemoveFolder(const fs::path& folder) {
    const std::wstring path = AnyLength(folder).wstring();
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        const std::wstring name = found.cFileName, entry = path + L'\\' + name;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        SetFileAttributesW(entry.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!isFolder)
            DeleteFileW(entry.c_str());
        else if (isLink)
            RemoveDirectoryW(entry.c_str());
        else if (name != L"." && name != L"..")
            RemoveFolder(entry);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    RemoveDirectoryW(path.c_str());
}

// The C library's own takes names that another process may take at the same time.
std::FILE* MakeTemporaryFile() {
    static std::atomic<unsigned> count = 0;
    const std::wstring name = L"qf" + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(count++);
    return _wfopen((fs::temp_directory_path() / name).c_str(), L"wb+D");
}

fs::path AnyLength(const fs::path& path) {
    fs::path plain = path;
    plain.make_preferred();
    const bool isLiteral = plain.native().starts_with(L"\\\\?\\");
    return isLiteral || !plain.is_absolute() ? plain : fs::path(L"\\\\?\\" + plain.native());
}

void SetLastWriteTime(const fs::path& file, std::int64_t seconds, long nanoseconds) {
    const std::int64_t ticks = 116444736000000000 + seconds * 10000000 + nanoseconds / 100;
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    const HANDLE opened = CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    const bool isSet = opened != INVALID_HANDLE_VALUE && SetFileTime(opened, nullptr, nullptr, &time);
    CloseHandle(opened);
    if (!isSet) throw std::runtime_error("cannot set the time of " + ToUtf8(file));
}

const int kGreatestNiceness = -THREAD_PRIORITY_IDLE;

int NicenessOfThisThread() { return -GetThreadPriority(GetCurrentThread()); }

std::size_t OpenHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

std::size_t RunningThreads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    std::size_t count = 0;
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    for (BOOL isOne = Thread32First(snapshot, &thread); isOne; isOne = Thread32Next(snapshot, &thread))
        if (thread.th32OwnerProcessID == GetCurrentProcessId()) ++count;
    CloseHandle(snapshot);
    return count;
}

void RunOnSmallStack(const std::function<void()>& work) {
    const auto body = [](void* argument) -> DWORD {
        (*static_cast<const std::function<void()>*>(argument))();
        return 0;
    };
    const HANDLE thread = CreateThread(nullptr, 256 * 1024, body, const_cast<std::function<void()>*>(&work),
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread == nullptr) throw std::runtime_error("no thread with a small stack");
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

bool CanRunItself() { return true; }

bool FilesCanChangePlaces() { return true; }

bool RunsUnderWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

fs::path ExecutableOnDisk() {
    wchar_t path[32768];
    const DWORD length = GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
    return std::wstring(path, length);
}

// The C library's environment and the system's.
void SetEnvironment(const char* name, const std::string& value) {
    _putenv_s(name, value.c_str());
    SetEnvironmentVariableA(name, value.c_str());
}

void ClearEnvironment(const char* name) {
    _putenv_s(name, "");
    SetEnvironmentVariableA(name, nullptr);
}

// The system's clock knows the machine's zone only, and the C library must not hear of another one.
TimeZone::TimeZone(const char*) {}

TimeZone::~TimeZone() = default;

bool TimeZone::Active() { return false; }

std::wstring WideByMachine(unsigned codePage, const std::string& bytes) {
    std::wstring wide(bytes.size() + 1, L'\0');
    const int length =
        MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()),
                            wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::optional<std::string> NarrowByMachine(unsigned codePage, const std::string& utf8) {
    if (codePage == CP_UTF8) return utf8;
    const std::wstring wide = WideByMachine(CP_UTF8, utf8);
    std::string bytes(wide.size() * 2 + 1, '\0');
    BOOL isIncomplete = FALSE;
    const int length =
        WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
                            bytes.data(), static_cast<int>(bytes.size()), nullptr, &isIncomplete);
    bytes.resize(static_cast<std::size_t>(length));
    return isIncomplete ? std::nullopt : std::optional(bytes);
}

std::tm LocalTime(std::time_t time) {
    std::tm fields{};
    localtime_s(&fields, &time);
    return fields;
}

// The C library's own knows neither times before 1970 nor after the year 3000.
std::tm UtcTime(std::time_t time) {
    using namespace std::chrono;
    const sys_seconds instant{seconds(time)};
    const sys_days day = floor<days>(instant);
    const year_month_day date(day);
    const hh_mm_ss clock(instant - day);
    std::tm fields{};
    fields.tm_year = int(date.year()) - 1900;
    fields.tm_mon = static_cast<int>(unsigned(date.month())) - 1;
    fields.tm_mday = static_cast<int>(unsigned(date.day()));
    fields.tm_wday = static_cast<int>(weekday(day).c_encoding());
    fields.tm_hour = static_cast<int>(clock.hours().count());
    fields.tm_min = static_cast<int>(clock.minutes().count());
    fields.tm_sec = static_cast<int>(clock.seconds().count());
    return fields;
}
