#include "host/text/iso_time.h"

#include <algorithm>
#include <chrono>

#include "host/text/number_text.h"

namespace host {
namespace {

std::string Digits(std::int64_t value, std::size_t width) {
    std::string digits = std::to_string(value);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
}

// Takes what it reads off the front of a text, and remembers the first thing that was not there.
class Scanner {
 public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    int Number(std::size_t digits) {
        int value = 0;
        for (std::size_t i = 0; i < digits; ++i) value = 10 * value + Digit();
        return value;
    }
    bool Take(std::string_view anyOf) {
        if (m_rest.empty() || anyOf.find(m_rest.front()) == std::string_view::npos) return false;
        m_rest.remove_prefix(1);
        return true;
    }
    void Expect(std::string_view anyOf) { m_good = Take(anyOf) && m_good; }
    void SkipDigits() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of("0123456789"), m_rest.size())); }
    bool AtEnd() const { return m_rest.empty(); }
    bool IsGood() const { return m_good; }

 private:
    int Digit() {
        const bool isDigit = !m_rest.empty() && m_rest.front() >= '0' && m_rest.front() <= '9';
        m_good = m_good && isDigit;
        if (!isDigit) return 0;
        const int digit = m_rest.front() - '0';
        m_rest.remove_prefix(1);
        return digit;
    }

    std::string_view m_rest;
    bool m_good = true;
};

// [s] since 1970; nothing for what is no date.
std::optional<std::int64_t> ReadDate(Scanner& text) {
    using namespace std::chrono;
    const year y(text.Number(4));
    text.Expect("-");
    const month m(static_cast<unsigned>(text.Number(2)));
    text.Expect("-");
    const year_month_day date(y, m, day(static_cast<unsigned>(text.Number(2))));
    if (!text.IsGood() || !date.ok()) return std::nullopt;
    return duration_cast<seconds>(sys_days(date).time_since_epoch()).count();
}

// [s] since midnight.
std::optional<std::int64_t> ReadClock(Scanner& text) {
    const int hours = text.Number(2);
    text.Expect(":");
    const int minutes = text.Number(2);
    const int seconds = text.Take(":") ? text.Number(2) : 0;
    if (text.Take(".,")) text.SkipDigits();
    if (!text.IsGood() || minutes > 59 || seconds > 60) return std::nullopt;
    const bool isMidnight = hours == 24 && minutes == 0 && seconds == 0;  // at the end of the day
    if (hours > 23 && !isMidnight) return std::nullopt;
    return 3600 * hours + 60 * minutes + seconds;
}

// [s] that the local time is ahead of UTC.
std::optional<std::int64_t> ReadZone(Scanner& text) {
    if (text.AtEnd() || text.Take("Zz")) return 0;
    const bool isAhead = text.Take("+");
    if (!isAhead) text.Expect("-");
    const int hours = text.Number(2);
    text.Take(":");
    const int minutes = text.AtEnd() ? 0 : text.Number(2);
    if (!text.IsGood() || hours > 14 || minutes > 59) return std::nullopt;
    return (isAhead ? 1 : -1) * (3600 * hours + 60 * minutes);
}

}  // namespace

std::string IsoText(std::int64_t seconds) {
    using namespace std::chrono;
    const sys_seconds time{std::chrono::seconds(seconds)};
    const sys_days midnight = floor<days>(time);
    const year_month_day date(midnight);
    const hh_mm_ss<std::chrono::seconds> clock(time - midnight);
    return Digits(static_cast<int>(date.year()), 4) + '-' + Digits(static_cast<unsigned>(date.month()), 2) +
           '-' + Digits(static_cast<unsigned>(date.day()), 2) + 'T' + Digits(clock.hours().count(), 2) + ':' +
           Digits(clock.minutes().count(), 2) + ':' + Digits(clock.seconds().count(), 2) + 'Z';
}

std::optional<std::int64_t> ReadIsoTime(std::string_view text) {
    Scanner scanner(WithoutBlanks(text));
    const auto date = ReadDate(scanner);
    scanner.Expect("Tt ");
    const auto clock = ReadClock(scanner);
    const auto zone = ReadZone(scanner);
    if (!date || !clock || !zone || !scanner.IsGood() || !scanner.AtEnd()) return std::nullopt;
    return *date + *clock - *zone;
}

}  // namespace host
