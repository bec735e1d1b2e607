#include "util/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

namespace {

constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Drops leading blanks and one sign; tells whether it was a minus.
bool TakeSign(std::string_view& text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
    const bool isNegative = text.front() == '-';
    text.remove_prefix(1);
    return isNegative;
}

std::int64_t ParseSaturated(std::string_view text) {
    const bool isNegative = TakeSign(text);
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
    const std::uint64_t limit = isNegative ? kLargest + 1 : kLargest;
    std::uint64_t magnitude = 0;
    for (const char c : text) {
        if (!IsDigit(c)) break;
        const auto digit = static_cast<std::uint64_t>(c - '0');
        if (magnitude > (limit - digit) / 10) {
            magnitude = limit;
            break;
        }
        magnitude = magnitude * 10 + digit;
    }
    return static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
}

constexpr std::array kPowersOfTen = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// What nearly every number in a document is: at most 15 digits and no exponent. Digits and power of ten are
// then exact in a double, so the one division is the only rounding. Nothing for a text that may be something
// else.
std::optional<double> ParsePlainDecimal(std::string_view text) {
    std::uint64_t digits = 0;
    std::size_t count = 0;
    std::size_t decimals = 0;
    bool isFraction = false;
    for (const char c : text) {
        if (IsDigit(c)) {
            if (++count == kPowersOfTen.size()) return std::nullopt;
            digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
            decimals += isFraction ? 1 : 0;
        } else if (c == '.' && !isFraction) {
            isFraction = true;
        } else if (IsLetter(c)) {
            return std::nullopt;
        } else {
            break;
        }
    }
    if (count == 0) return std::nullopt;
    return static_cast<double>(digits) / kPowersOfTen[decimals];
}

// Of a number that no double can hold: whether it is too large, not too small. Those are so far apart that the
// place of the first digit decides.
bool IsTooLarge(std::string_view number, std::string_view exponentLetters, std::int64_t placesPerDigit) {
    constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() / 4;
    const std::size_t letter = number.find_first_of(exponentLetters);
    const auto mantissa = number.substr(0, letter);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const auto places =
        static_cast<std::int64_t>(point) - static_cast<std::int64_t>(mantissa.find_first_not_of("0."));
    const std::int64_t exponent = letter == number.npos ? 0 : ParseSaturated(number.substr(letter + 1));
    return places * placesPerDigit + std::clamp(exponent, -kFar, kFar) > 0;
}

// Nothing where no number stands.
std::optional<double> ParseMagnitude(std::string_view text, std::chars_format format) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format);
    if (error == std::errc()) return value;
    if (error != std::errc::result_out_of_range) return std::nullopt;
    const auto number = text.substr(0, static_cast<std::size_t>(end - text.data()));
    const bool isTooLarge =
        format == std::chars_format::hex ? IsTooLarge(number, "pP", 4) : IsTooLarge(number, "eE", 1);
    return isTooLarge ? std::numeric_limits<double>::infinity() : 0.0;
}

// Digits, perhaps with a point among them: more of them than a double holds exactly.
double ParseLongDecimal(std::string_view text) {
    return ParseMagnitude(text, std::chars_format::fixed).value_or(0.0);
}

bool IsHexadecimal(std::string_view text) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
           (IsHexDigit(text[2]) || text[2] == '.');
}

// An exponent has one sign, though from_chars takes a minus behind a plus.
std::optional<double> ParseHexadecimal(std::string_view digits) {
    return ParseMagnitude(digits.substr(0, digits.find("+-")), std::chars_format::hex);
}

// Any number without its sign; a second sign, which from_chars would take, is none.
std::optional<double> ParseUnsigned(std::string_view text) {
    if (text.empty() || text.front() == '-') return std::nullopt;
    const auto hexadecimal = IsHexadecimal(text) ? ParseHexadecimal(text.substr(2)) : std::nullopt;
    return hexadecimal ? hexadecimal : ParseMagnitude(text, std::chars_format::general);
}

char* WriteAnyReal(double value, char* to) {
    return std::to_chars(to, to + numbers::kRealRoom, value, std::chars_format::fixed, 6).ptr;
}

// "00" to "99": digits in pairs take half the divisions.
constexpr auto kDigitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

void WriteDigitPair(std::uint32_t value, char* to) { std::memcpy(to, &kDigitPairs[2 * value], 2); }

char* WriteSixDigits(std::uint32_t value, char* to) {
    WriteDigitPair(value / 10000, to);
    WriteDigitPair(value / 100 % 100, to + 2);
    WriteDigitPair(value % 100, to + 4);
    return to + 6;
}

}  // namespace

std::int32_t numbers::ParseInteger(std::string_view text) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(ParseSaturated(text)));
}

double numbers::ParseReal(std::string_view text) {
    const bool isNegative = TakeSign(text);
    auto magnitude = ParsePlainDecimal(text);
    if (!magnitude) magnitude = ParseUnsigned(text);
    if (!magnitude) return 0.0;
    return isNegative ? -*magnitude : *magnitude;
}

const char* numbers::ReadPlainReal(const char* at, double& value) {
    const bool isNegative = *at == '-';
    if (isNegative) ++at;
    std::uint64_t digits = 0;
    const char* const begin = at;
    for (; IsDigit(*at); ++at) digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    auto count = static_cast<std::size_t>(at - begin);
    std::size_t decimals = 0;
    if (*at == '.') {
        const char* const fraction = ++at;
        for (; IsDigit(*at); ++at) digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
        decimals = static_cast<std::size_t>(at - fraction);
        count += decimals;
    }
    if (count == 0) return nullptr;
    const double magnitude =
        count < kPowersOfTen.size()
            ? static_cast<double>(static_cast<std::int64_t>(digits)) / kPowersOfTen[decimals]
            : ParseLongDecimal({begin, at});
    value = isNegative ? -magnitude : magnitude;
    return at;
}

char* numbers::WriteInteger(std::int32_t value, char* to) {
    return std::to_chars(to, to + kIntegerRoom, value).ptr;
}

// The whole part and the fraction of a double are exact; their product with a million is rounded, but never
// across a half, which is a double itself. So only a product that is a half needs the slow way, to see on which
// side it is.
char* numbers::WriteReal(double value, char* to) {
    constexpr std::uint32_t kMillion = 1000000;
    const double magnitude = std::fabs(value);
    if (!(magnitude < 1e9)) return WriteAnyReal(value, to);
    auto whole = static_cast<std::uint32_t>(magnitude);
    const double scaled = (magnitude - whole) * kMillion;
    auto millionths = static_cast<std::uint32_t>(scaled);
    const double rest = scaled - millionths;
    if (rest == 0.5) return WriteAnyReal(value, to);
    if (rest > 0.5) ++millionths;
    if (millionths == kMillion) {
        millionths = 0;
        ++whole;
    }
    if (std::signbit(value)) *to++ = '-';
    to = std::to_chars(to, to + kIntegerRoom, whole).ptr;
    *to++ = '.';
    return WriteSixDigits(millionths, to);
}
