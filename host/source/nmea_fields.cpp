#include "host/source/nmea_fields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <limits>

namespace host {
namespace {

constexpr double kMetresPerSecondInAKnot = 1852.0 / 3600.0;
constexpr TimeOfDay kSecond = 1'000'000;

// The fields behind the address; one that is not there reads as empty.
class Fields {
 public:
    explicit Fields(std::string_view body) {
        for (std::size_t i = 0; i < m_fields.size() && !body.empty(); ++i) {
            const std::size_t comma = body.find(',');
            m_fields[i] = body.substr(0, comma);
            body.remove_prefix(comma == std::string_view::npos ? body.size() : comma + 1);
        }
    }
    std::string_view operator[](std::size_t i) const { return m_fields[i]; }

 private:
    std::array<std::string_view, 12> m_fields;
};

bool IsAll(std::string_view text, std::string_view allowed) {
    return !text.empty() && text.find_first_not_of(allowed) == std::string_view::npos;
}

// Digits with at most one point: no exponent, no "nan", nothing behind.
std::optional<double> Decimal(std::string_view text) {
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    if (!IsAll(digits, "0123456789.")) return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
    if (error != std::errc() || end != text.end()) return std::nullopt;
    return value;
}

std::optional<double> DecimalWithin(std::string_view text, double least, double most) {
    const auto value = Decimal(text);
    return value && *value >= least && *value <= most ? value : std::nullopt;
}

// Some receivers leave speed and course empty while they stand.
std::optional<double> DecimalOrZero(std::string_view text, double most) {
    return text.empty() ? std::optional(0.0) : DecimalWithin(text, 0.0, most);
}

// Two digits at `at`; the caller has made sure that they are digits.
int TwoDigits(std::string_view text, std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); }

// The fraction of "hhmmss.ss" in microseconds, cut.
TimeOfDay Fraction(std::string_view digits) {
    TimeOfDay value = 0;
    for (std::size_t i = 0; i < 6; ++i) value = value * 10 + (i < digits.size() ? digits[i] - '0' : 0);
    return value;
}

std::optional<TimeOfDay> ReadTime(std::string_view text) {
    const std::string_view clock = text.substr(0, 6), rest = text.substr(clock.size());
    if (clock.size() != 6 || !IsAll(clock, "0123456789")) return std::nullopt;
    if (!rest.empty() && rest != "." && (rest[0] != '.' || !IsAll(rest.substr(1), "0123456789")))
        return std::nullopt;
    const int hour = TwoDigits(clock, 0), minute = TwoDigits(clock, 2), second = TwoDigits(clock, 4);
    if (hour > 23 || minute > 59 || second > 60) return std::nullopt;  // 60: a leap second
    return (hour * 3600 + minute * 60 + second) * kSecond + Fraction(rest.substr(rest.empty() ? 0 : 1));
}

// "ddmmyy" as days since 1970.
std::optional<int> ReadDate(std::string_view text) {
    if (text.size() != 6 || !IsAll(text, "0123456789")) return std::nullopt;
    const int shortYear = TwoDigits(text, 4);
    const std::chrono::year_month_day date{std::chrono::year(shortYear + (shortYear >= 80 ? 1900 : 2000)),
                                           std::chrono::month(static_cast<unsigned>(TwoDigits(text, 2))),
                                           std::chrono::day(static_cast<unsigned>(TwoDigits(text, 0)))};
    if (!date.ok()) return std::nullopt;
    return std::chrono::sys_days(date).time_since_epoch().count();
}

std::optional<std::int32_t> SecondsSince1970(int days, TimeOfDay time) {
    const std::int64_t seconds = std::int64_t{days} * 86400 + time / kSecond;
    if (seconds > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    return static_cast<std::int32_t>(seconds);
}

// "dddmm.mmmm" and a hemisphere as signed degrees. Receivers that do not pad the degrees are understood.
std::optional<double> ReadAngle(std::string_view text, std::string_view hemisphere, std::string_view sides,
                                double most) {
    const std::size_t whole = std::min(text.find('.'), text.size());
    if (whole < 3 || whole > 5 || hemisphere.size() != 1 || !IsAll(hemisphere, sides)) return std::nullopt;
    const auto degrees = DecimalWithin(text.substr(0, whole - 2), 0, most);
    const auto minutes = DecimalWithin(text.substr(whole - 2), 0, 60);
    if (!degrees || !minutes || *minutes >= 60 || *degrees + *minutes / 60 > most) return std::nullopt;
    const double angle = *degrees + *minutes / 60;
    return hemisphere[0] == sides[1] ? -angle : angle;
}

// Four fields: latitude, hemisphere, longitude, hemisphere.
bool ReadPosition(const Fields& fields, std::size_t first, TckPt& fix) {
    const auto latitude = ReadAngle(fields[first], fields[first + 1], "NS", 90);
    const auto longitude = ReadAngle(fields[first + 2], fields[first + 3], "EW", 180);
    if (!latitude || !longitude) return false;
    fix.dLatitude = *latitude;
    fix.dLongitude = *longitude;
    return true;
}

bool ReadMovement(const Fields& fields, TckPt& fix) {
    const auto knots = DecimalOrZero(fields[7], 1e6);
    const auto course = DecimalOrZero(fields[8], 360);
    if (!knots || !course) return false;
    fix.dSpeed = *knots * kMetresPerSecondInAKnot;
    fix.fCourse = static_cast<float>(*course);
    return true;
}

}  // namespace

Reading ReadRmc(std::string_view body, Rmc& rmc) {
    const Fields fields(body);
    if (fields[2] == "V") return Reading::NoFix;
    const auto time = ReadTime(fields[1]);
    Rmc read;
    if (fields[2] != "A" || !time || !ReadPosition(fields, 3, read.fix) || !ReadMovement(fields, read.fix))
        return Reading::BadField;
    if (fields[9].empty()) return Reading::NoDate;
    const auto days = ReadDate(fields[9]);
    const auto seconds = days ? SecondsSince1970(*days, *time) : std::nullopt;
    if (!seconds) return Reading::BadField;
    read.timeOfDay = *time;
    read.fix.lTime = *seconds;
    rmc = read;
    return Reading::Good;
}

Reading ReadGga(std::string_view body, Gga& gga) {
    const Fields fields(body);
    if (fields[6].empty() || fields[6] == "0") return Reading::NoFix;
    const auto time = ReadTime(fields[1]);
    const auto altitude = Decimal(fields[9]);
    TckPt position{};
    if (!time || !IsAll(fields[6], "123456789") || !ReadPosition(fields, 2, position)) return Reading::BadField;
    if (!altitude && !fields[9].empty()) return Reading::BadField;
    gga = {*time, altitude, DecimalWithin(fields[8], 0, 1e6)};
    return Reading::Good;
}

}  // namespace host
