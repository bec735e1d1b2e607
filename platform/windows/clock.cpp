// The system's own clock and calendar, held to the documented range.
#include "platform/clock.h"

namespace platform {

namespace {
constexpr WORD kLastYear = 30827;
}

void GetSystemTime(SYSTEMTIME* now) { ::GetSystemTime(now); }

void GetLocalTime(SYSTEMTIME* now) { ::GetLocalTime(now); }

// A day that some systems take for one of the next month is none.
bool SystemTimeToFileTime(const SYSTEMTIME* calendar, FileTime* ticks) {
    FILETIME time;
    SYSTEMTIME taken;
    if (calendar->wYear > kLastYear || !::SystemTimeToFileTime(calendar, &time)) return false;
    if (!::FileTimeToSystemTime(&time, &taken) || taken.wDay != calendar->wDay) return false;
    *ticks = static_cast<FileTime>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return true;
}

bool FileTimeToSystemTime(const FileTime* ticks, SYSTEMTIME* calendar) {
    const FILETIME time = {static_cast<DWORD>(*ticks), static_cast<DWORD>(*ticks >> 32)};
    SYSTEMTIME converted;
    if (!::FileTimeToSystemTime(&time, &converted)) return false;
    *calendar = converted;
    return true;
}

}  // namespace platform
