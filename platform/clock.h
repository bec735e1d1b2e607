// The clock and the calendar. Proleptic Gregorian, no time-zone database but the one behind the local clock.
#pragma once

#include <cstdint>

#include "platform/system_time.h"

namespace platform {

// A file time: 100-nanosecond intervals since 1601-01-01 00:00.
using FileTime = std::uint64_t;

// The clock now, in UTC and in the machine's local time. Any thread.
void GetSystemTime(SYSTEMTIME* now);
void GetLocalTime(SYSTEMTIME* now);

// The calendar record as a file time; the day of week is ignored. False, with *ticks untouched, for a year
// below 1601 or above 30827, a month, day, hour, minute, second or millisecond that does not exist.
bool SystemTimeToFileTime(const SYSTEMTIME* calendar, FileTime* ticks);

// Fills all eight fields. False, with the record untouched, from 2^63 on.
bool FileTimeToSystemTime(const FileTime* ticks, SYSTEMTIME* calendar);

}  // namespace platform
