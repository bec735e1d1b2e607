// Time values, calendar records and their texts. A time value is a signed 32-bit count of seconds since
// 1970-01-01 00:00; no time zone is ever applied: what goes in comes back out. Plain functions; any thread.
#pragma once

#include <string>

#include "platform/system_time.h"
#include "util/export.h"

// Calendar record to time value, its 32 bits in an unsigned long (never sign-extended). Milliseconds are
// dropped, which before 1970 rounds towards 1970; the day of week is ignored. A record that is no date
// gives 0.
QTRACE_API unsigned long ChangeSYSTIMEToTime_T(SYSTEMTIME st);

// Time value to calendar record, day of week included, milliseconds 0. `st` non-null.
QTRACE_API void TimetToSystemTime(long t, SYSTEMTIME* st);

// The local clock as "2001-09-09 014640".
QTRACE_API std::string GetLocalTimeStr();

// Reads year-month-dayThour:minute:second with any tail; every number as atoi reads it. Day and second are
// always set, the others where their separator is there; day of week and milliseconds never. Without a T
// nothing changes.
QTRACE_API void DTSTR2SYS(const std::string& text, SYSTEMTIME& st);
