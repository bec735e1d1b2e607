// Calendar records and a calendar that counts day by day, for the tests of time values.
#pragma once

#include <cstdint>
#include <ostream>
#include <tuple>

#include "platform/system_time.h"

inline auto Fields(const SYSTEMTIME& st) {
    return std::make_tuple(st.wYear, st.wMonth, st.wDayOfWeek, st.wDay, st.wHour, st.wMinute, st.wSecond,
                           st.wMilliseconds);
}
inline bool operator==(const SYSTEMTIME& a, const SYSTEMTIME& b) { return Fields(a) == Fields(b); }
inline void PrintTo(const SYSTEMTIME& st, std::ostream* out) {
    *out << st.wYear << '-' << st.wMonth << '-' << st.wDay << ' ' << st.wHour << ':' << st.wMinute << ':'
         << st.wSecond << '.' << st.wMilliseconds << " day of week " << st.wDayOfWeek;
}

inline std::uint16_t Word(std::int64_t value) { return static_cast<std::uint16_t>(value); }

inline SYSTEMTIME Calendar(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                           int ms = 0, int dayOfWeek = 0) {
    return {Word(year), Word(month),  Word(dayOfWeek), Word(day),
            Word(hour), Word(minute), Word(second),    Word(ms)};
}

// One day after the other, as the Gregorian calendar counts them.
class DayByDay {
 public:
    DayByDay(int year, int month, int day, int dayOfWeek)
        : m_year(year), m_month(month), m_day(day), m_dayOfWeek(dayOfWeek) {}
    void Next() {
        m_dayOfWeek = (m_dayOfWeek + 1) % 7;
        if (++m_day <= DaysOfMonth()) return;
        m_day = 1;
        if (++m_month <= 12) return;
        m_month = 1;
        ++m_year;
    }
    SYSTEMTIME At(int secondOfDay) const {
        return Calendar(m_year, m_month, m_day, secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60, 0,
                        m_dayOfWeek);
    }

 private:
    int DaysOfMonth() const {
        const bool leap = (m_year % 4 == 0 && m_year % 100 != 0) || m_year % 400 == 0;
        if (m_month == 2) return leap ? 29 : 28;
        return m_month == 4 || m_month == 6 || m_month == 9 || m_month == 11 ? 30 : 31;
    }
    int m_year, m_month, m_day, m_dayOfWeek;
};
