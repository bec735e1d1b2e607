#include "gpx/gpx_time.h"

#include <cstring>

#include "gpx/gpx_text.h"
#include "platform/clock.h"
#include "util/numbers.h"
#include "util/time.h"

namespace {

char* WriteTwoDigits(unsigned value, char* to) {
    to[0] = static_cast<char>('0' + value / 10);
    to[1] = static_cast<char>('0' + value % 10);
    return to + 2;
}

char* WriteField(char separator, unsigned value, char* to) {
    *to = separator;
    return WriteTwoDigits(value, to + 1);
}

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::uint16_t TwoDigits(const char* at) {
    return static_cast<std::uint16_t>((at[0] - '0') * 10 + (at[1] - '0'));
}

constexpr std::string_view kUsualForm = "dddd-dd-ddTdd:dd:dd";

bool HasUsualForm(std::string_view text) {
    if (text.size() < kUsualForm.size()) return false;
    for (std::size_t i = 0; i < kUsualForm.size(); ++i)
        if (kUsualForm[i] == 'd' ? !IsDigit(text[i]) : text[i] != kUsualForm[i]) return false;
    return text.size() == kUsualForm.size() || !IsDigit(text[kUsualForm.size()]);
}

// Whether dd:dd:dd is a time of a day, and then which second of it.
bool IsTimeOfDay(const char* at, std::uint32_t& second) {
    for (const int digit : {0, 1, 3, 4, 6, 7})
        if (!IsDigit(at[digit])) return false;
    const unsigned hours = TwoDigits(at);
    const unsigned minutes = TwoDigits(at + 3);
    const unsigned seconds = TwoDigits(at + 6);
    second = (hours * 60 + minutes) * 60 + seconds;
    return at[2] == ':' && at[5] == ':' && hours <= 23 && minutes <= 59 && seconds <= 59;
}

// Nearly every time there is; the same fields that ReadAnyForm finds, without its conversions.
SYSTEMTIME ReadUsualForm(const char* text) {
    SYSTEMTIME time{};
    time.wYear = static_cast<std::uint16_t>(TwoDigits(text) * 100 + TwoDigits(text + 2));
    time.wMonth = TwoDigits(text + 5);
    time.wDay = TwoDigits(text + 8);
    time.wHour = TwoDigits(text + 11);
    time.wMinute = TwoDigits(text + 14);
    time.wSecond = TwoDigits(text + 17);
    return time;
}

SYSTEMTIME ReadAnyForm(std::string_view text) {
    constexpr int kLongest = 31;
    char ansi[kLongest + 1];
    gpx::ToAnsi(text, ansi, kLongest);
    SYSTEMTIME time{};
    if (*ansi == '\0')
        platform::GetSystemTime(&time);
    else
        DTSTR2SYS(ansi, time);
    return time;
}

}  // namespace

char* gpx::WriteTime(std::int32_t seconds, char* to) {
    SYSTEMTIME time{};
    TimetToSystemTime(seconds, &time);
    to = numbers::WriteInteger(time.wYear, to);
    to = WriteField('-', time.wMonth, to);
    to = WriteField('-', time.wDay, to);
    to = WriteField('T', time.wHour, to);
    to = WriteField(':', time.wMinute, to);
    to = WriteField(':', time.wSecond, to);
    *to = 'Z';
    return to + 1;
}

char* gpx::TimeWriter::Write(std::int32_t seconds, char* to) {
    constexpr std::int64_t kPerDay = 86400;
    const std::int64_t day = (seconds - (seconds < 0 ? kPerDay - 1 : 0)) / kPerDay;
    if (day != m_day) RememberDay(day, seconds);
    const auto second = static_cast<unsigned>(seconds - day * kPerDay);
    std::memcpy(to, m_date, kTimeRoom);  // as much as there is room for: that is one move
    to = WriteTwoDigits(second / 3600, to + m_dateSize);
    to = WriteField(':', second / 60 % 60, to);
    to = WriteField(':', second % 60, to);
    *to = 'Z';
    return to + 1;
}

void gpx::TimeWriter::RememberDay(std::int64_t day, std::int32_t seconds) {
    const std::string_view time(m_date, WriteTime(seconds, m_date));
    m_dateSize = time.find('T') + 1;
    m_day = day;
}

std::int32_t gpx::TimeReader::Read(std::string_view text) {
    std::uint32_t second = 0;
    if (text.size() > kUsualForm.size() && std::memcmp(text.data(), m_day.data(), kDaySize) == 0 &&
        IsTimeOfDay(text.data() + kDaySize, second) && !IsDigit(text[kUsualForm.size()]))
        return static_cast<std::int32_t>(m_midnight + second);
    const std::int32_t seconds = ReadTime(text);
    RememberDay(text, seconds);
    return seconds;
}

// Only a day that exists: what is no date is 0 at each of its hours.
void gpx::TimeReader::RememberDay(std::string_view text, std::int32_t seconds) {
    std::uint32_t second = 0;
    if (!HasUsualForm(text) || !IsTimeOfDay(text.data() + kDaySize, second)) return;
    const SYSTEMTIME time = ReadUsualForm(text.data());
    platform::FileTime ticks = 0;
    if (!platform::SystemTimeToFileTime(&time, &ticks)) return;
    text.copy(m_day.data(), kDaySize);
    m_midnight = static_cast<std::uint32_t>(seconds) - second;
}

std::int32_t gpx::ReadTime(std::string_view text) {
    const SYSTEMTIME time = HasUsualForm(text) ? ReadUsualForm(text.data()) : ReadAnyForm(text);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(ChangeSYSTIMEToTime_T(time)));
}
