#include "host/text/display_width.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

struct Range {
    char32_t first, last;
};

// The blocks of Unicode whose characters are wide (East Asian Width W and F), and those that combine.
constexpr std::array<Range, 13> kWide = {{{0x1100, 0x115f},
                                          {0x2e80, 0x303e},
                                          {0x3041, 0x33ff},
                                          {0x3400, 0x4dbf},
                                          {0x4e00, 0x9fff},
                                          {0xa000, 0xa4cf},
                                          {0xac00, 0xd7a3},
                                          {0xf900, 0xfaff},
                                          {0xfe30, 0xfe6f},
                                          {0xff00, 0xff60},
                                          {0xffe0, 0xffe6},
                                          {0x1f300, 0x1faff},
                                          {0x20000, 0x3fffd}}};
constexpr std::array<Range, 8> kCombining = {{{0x0300, 0x036f},
                                              {0x0483, 0x0489},
                                              {0x0591, 0x05bd},
                                              {0x200b, 0x200f},
                                              {0x20d0, 0x20ff},
                                              {0x3099, 0x309a},
                                              {0xfe00, 0xfe0f},
                                              {0xfe20, 0xfe2f}}};
constexpr std::array<Range, 6> kControls = {
    {{0, 0x1f}, {0x7f, 0x9f}, {0x061c, 0x061c}, {0x200e, 0x200f}, {0x202a, 0x202e}, {0x2066, 0x2069}}};

template <std::size_t N>
bool IsIn(const std::array<Range, N>& ranges, char32_t c) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [c](const Range& range) { return c >= range.first && c <= range.last; });
}

std::size_t WidthOf(char32_t c) {
    if (IsIn(kCombining, c)) return 0;
    return IsIn(kWide, c) ? 2 : 1;
}

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

struct Character {
    char32_t code;
    std::size_t bytes;
};

// The first character. A byte that begins none stands for itself.
Character FirstOf(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t bytes = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc0 ? 2 : 1;
    if (bytes == 1 || bytes > text.size()) return {lead, 1};
    char32_t code = lead & (0xffu >> (bytes + 1));
    for (std::size_t i = 1; i < bytes; ++i) {
        if (!IsContinuation(text[i])) return {lead, 1};
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3fu);
    }
    return {code, bytes};
}

// With what `instead` gives for each control character.
template <typename Instead>
std::string WithControls(std::string_view text, Instead instead) {
    std::string replaced;
    while (!text.empty()) {
        const Character next = FirstOf(text);
        if (IsIn(kControls, next.code))
            replaced += instead(next.code);
        else
            replaced += text.substr(0, next.bytes);
        text.remove_prefix(next.bytes);
    }
    return replaced;
}

// "\u202e". All of them have four digits.
std::string Escape(char32_t control) {
    std::string text = "\\u0000";
    for (std::size_t digit = text.size(); control != 0; control >>= 4)
        text[--digit] = "0123456789abcdef"[control & 15];
    return text;
}

}  // namespace

std::size_t DisplayWidth(const std::string& text) {
    std::size_t width = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const Character next = FirstOf(rest);
        width += WidthOf(next.code);
        rest.remove_prefix(next.bytes);
    }
    return width;
}

std::string FitWidth(const std::string& text, std::size_t columns) {
    if (DisplayWidth(text) <= columns) return text;
    std::string fitting;
    std::size_t left = columns == 0 ? 0 : columns - 1;
    for (std::string_view rest = text; !rest.empty();) {
        const Character next = FirstOf(rest);
        if (WidthOf(next.code) > left) break;
        left -= WidthOf(next.code);
        fitting += rest.substr(0, next.bytes);
        rest.remove_prefix(next.bytes);
    }
    return columns == 0 ? "" : fitting + "…";
}

std::string ReplaceControls(std::string_view text, char instead) {
    return WithControls(text, [instead](char32_t) { return std::string(1, instead); });
}

std::string Printable(const std::string& text) { return ReplaceControls(text, '?'); }

std::string EscapeControls(std::string_view json) {
    return WithControls(json, [](char32_t control) { return control == '\n' ? "\n" : Escape(control); });
}

}  // namespace host
