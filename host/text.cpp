#include "host/text.h"

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
    return {buffer.begin(), end};
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

}  // namespace host
