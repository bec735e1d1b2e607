#include "host/text/text.h"

#include <array>
#include <charconv>

#include "qtrace.h"

namespace host {
namespace {

std::string Padded(unsigned value, std::size_t width) {
    const std::string digits = std::to_string(value);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
}

}  // namespace

std::string Decimals(double value, int digits) {
    std::array<char, 340> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed, digits).ptr;
    const std::string text(buffer.begin(), end);
    const bool isZero = text.find_first_not_of("-.0") == std::string::npos;
    return isZero && text.starts_with('-') ? text.substr(1) : text;
}

std::string UtcText(long seconds) {
    if (seconds == 0) return "unknown";
    SYSTEMTIME t{};
    TimetToSystemTime(seconds, &t);
    return Padded(t.wYear, 4) + '-' + Padded(t.wMonth, 2) + '-' + Padded(t.wDay, 2) + ' ' + Padded(t.wHour, 2) +
           ':' + Padded(t.wMinute, 2) + ':' + Padded(t.wSecond, 2) + " UTC";
}

std::string Counted(std::uint64_t count, const char* one, const char* several) {
    return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

std::string DistanceText(double metres) {
    return metres < 1000 ? Decimals(metres, 0) + " m" : Decimals(metres / 1000, 2) + " km";
}

// Every byte of a code page becomes three of UTF-8 at most, and every byte of UTF-8 two of a code page.
std::string ToUtf8(const std::string& libraryText) {
    std::string text(3 * libraryText.size() + 1, '\0');
    AnsicToUTF_8(libraryText.c_str(), text.data(), static_cast<int>(text.size()));
    return text.c_str();
}

std::string FromUtf8(const std::string& text) {
    std::string libraryText(2 * text.size() + 2, '\0');
    UTF_8ToAnsic(text.c_str(), libraryText.data(), static_cast<int>(libraryText.size()) - 1);
    return libraryText.c_str();
}

}  // namespace host
