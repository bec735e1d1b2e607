#include "util/time.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "platform/clock.h"
#include "util/numbers.h"

namespace {

constexpr std::int64_t kTicksFrom1601To1970 = 116444736000000000;
constexpr std::int64_t kTicksPerSecond = 10000000;

// The text before the first `separator`, taken off `text` with it; false, with both as they were, when there is
// none.
bool TakeField(std::string_view& text, char separator, std::string_view& field) {
    const std::size_t end = text.find(separator);
    if (end == std::string_view::npos) return false;
    field = text.substr(0, end);
    text.remove_prefix(end + 1);
    return true;
}

std::uint16_t ToField(std::string_view text) { return static_cast<std::uint16_t>(numbers::ParseInteger(text)); }

void ReadDate(std::string_view date, SYSTEMTIME& st) {
    std::string_view field;
    if (TakeField(date, '-', field)) st.wYear = ToField(field);
    if (TakeField(date, '-', field)) st.wMonth = ToField(field);
    st.wDay = ToField(date);
}

void ReadTime(std::string_view time, SYSTEMTIME& st) {
    std::string_view field;
    if (TakeField(time, ':', field)) st.wHour = ToField(field);
    if (TakeField(time, ':', field)) st.wMinute = ToField(field);
    st.wSecond = ToField(time);
}

}  // namespace

unsigned long ChangeSYSTIMEToTime_T(SYSTEMTIME st) {
    platform::FileTime ticks = kTicksFrom1601To1970;  // what is no date counts as no time
    platform::SystemTimeToFileTime(&st, &ticks);
    const std::int64_t seconds = (static_cast<std::int64_t>(ticks) - kTicksFrom1601To1970) / kTicksPerSecond;
    return static_cast<std::uint32_t>(seconds);
}

void TimetToSystemTime(long t, SYSTEMTIME* st) {
    const std::int64_t seconds =
        static_cast<std::int32_t>(t);  // a time value has 32 bits wherever long has more
    const auto ticks = static_cast<platform::FileTime>(seconds * kTicksPerSecond + kTicksFrom1601To1970);
    platform::FileTimeToSystemTime(&ticks, st);
}

std::string GetLocalTimeStr() {
    SYSTEMTIME now{};
    platform::GetLocalTime(&now);
    char text[64] = {};
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d%02d%02d", now.wYear, now.wMonth, now.wDay, now.wHour,
                  now.wMinute, now.wSecond);
    return text;
}

void DTSTR2SYS(const std::string& text, SYSTEMTIME& st) {
    std::string_view time = text;
    std::string_view date;
    if (!TakeField(time, 'T', date)) return;
    ReadDate(date, st);
    ReadTime(time, st);
}
