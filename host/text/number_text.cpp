#include "host/text/number_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace host {

namespace {

template <typename Real>
std::string Shortest(Real value) {
    if (value == 0) return "0";     // also -0
    std::array<char, 1100> text{};  // the smallest double has 1074 digits behind the point
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed).ptr;
    return {text.begin(), end};
}

}  // namespace

std::string ExactText(double value) { return Shortest(value); }

std::string SingleText(double value) { return Shortest(static_cast<float>(value)); }

std::optional<double> ReadNumber(std::string_view text) {
    text = WithoutBlanks(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string_view WithoutBlanks(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace host
