#include "host/text/markup.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace host {
namespace {

// How many bytes the UTF-8 character at the beginning has; 0 when it is none that XML holds.
std::size_t CharacterAt(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) return first >= 0x20 || first == '\t' || first == '\n' || first == '\r' ? 1 : 0;
    const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length) return 0;
    std::uint32_t code = first & (0xffu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
        code = code << 6 | (byte(i) & 0x3f);
    }
    constexpr std::array<std::uint32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
    const bool good = code >= kLeast[length] && code <= 0x10ffff && (code < 0xd800 || code > 0xdfff) &&
                      code != 0xfffe && code != 0xffff;
    return good ? length : 0;
}

}  // namespace

std::string MarkupText(const std::string& text) {
    std::string markup;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = std::string_view(text).substr(at);
        const std::size_t length = CharacterAt(rest);
        constexpr std::string_view kSpecial = "&<>\"'";
        constexpr std::array<std::string_view, 5> kEntities = {"&amp;", "&lt;", "&gt;", "&quot;", "&#39;"};
        const std::size_t special = kSpecial.find(rest[0]);
        if (length == 0)
            markup += "\ufffd";
        else if (special != std::string_view::npos)
            markup += kEntities[special];
        else
            markup += rest.substr(0, length);
        at += length == 0 ? 1 : length;
    }
    return markup;
}

}  // namespace host
