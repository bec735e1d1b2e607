#include "host/tracks/gpx_color.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace host {
namespace {

constexpr std::array<std::pair<std::string_view, unsigned long>, 16> kPalette = {{
    {"Black", 0x000000},
    {"DarkRed", 0x00008b},
    {"DarkGreen", 0x006400},
    {"DarkYellow", 0x00b5b8},
    {"DarkBlue", 0x8b0000},
    {"DarkMagenta", 0x8b008b},
    {"DarkCyan", 0x8b8b00},
    {"LightGray", 0xcccccc},
    {"DarkGray", 0x444444},
    {"Red", 0x0000ff},
    {"Green", 0x00ff00},
    {"Yellow", 0x00ffff},
    {"Blue", 0xff0000},
    {"Magenta", 0xff00ff},
    {"Cyan", 0xffff00},
    {"White", 0xffffff},
}};

template <typename Number>
std::optional<Number> WholeNumber(std::string_view text, int base) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::optional<unsigned long> Hexadecimal(std::string_view text) {
    if (text.starts_with('#')) text.remove_prefix(1);
    if (text.size() == 8) text.remove_prefix(2);  // opacity
    const auto rgb = text.size() == 6 ? WholeNumber<std::uint32_t>(text, 16) : std::nullopt;
    if (!rgb) return std::nullopt;
    return (*rgb & 0xff) << 16 | (*rgb & 0xff00) | *rgb >> 16;
}

}  // namespace

std::optional<unsigned long> ReadGpxColor(std::string_view elementName, bool isDirect, std::string_view text) {
    for (const auto& [name, value] : kPalette)
        if (name == text) return value;
    const bool isOurs = isDirect && elementName.find(':') == std::string_view::npos;
    if (const auto own = isOurs ? WholeNumber<std::int64_t>(text, 10) : std::nullopt)
        return static_cast<std::uint32_t>(*own);
    return Hexadecimal(text);
}

}  // namespace host
