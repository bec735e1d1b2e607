// UTF-8 and UTF-16, character by character and as whole texts. Ill-formed input is replaced by U+FFFD.
// The code-page services are built on it (platform/posix/code_page.cpp), and so are file names.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// One character; a lone surrogate where UTF-16 input held one is reported as U+FFFD.
using Character = char32_t;
inline constexpr Character kReplacement = 0xFFFD;

// At most two code units of UTF-16, or four of UTF-8.
template <class Unit, int Capacity>
struct Units {
    Unit values[Capacity];
    int count;
};

// Reads the character at `at`, which is below `end`, and steps over it.
//
// Ill-formed bytes: a lead byte takes the continuation byte behind it even where the two make no character, and
// those behind that while the sequence can still become one; together they are a single U+FFFD. Every other
// stray byte is one of its own. So ED A0 80 gives two of them, F4 90 80 80 three and E4 BD one.
Character ReadUtf8(const char*& at, const char* end);
Character ReadUtf16(const wchar_t*& at, const wchar_t* end);

Units<wchar_t, 2> WriteUtf16(Character character);
Units<char, 4> WriteUtf8(Character character);

std::wstring ToUtf16(std::string_view utf8);
std::string ToUtf8(std::wstring_view utf16);

// Most text is ASCII, and most of the rest below the surrogates: that much is inlined into the loops.
Character ReadLongUtf8(const char*& at, const char* end);
inline Character ReadUtf8(const char*& at, const char* end) {
    const auto byte = static_cast<unsigned char>(*at);
    return byte < 0x80 ? (++at, byte) : ReadLongUtf8(at, end);
}

Units<char, 4> WriteLongUtf8(Character character);
inline Units<char, 4> WriteUtf8(Character character) {
    if (character < 0x80) return {{static_cast<char>(character)}, 1};
    return WriteLongUtf8(character);
}

Character ReadHighUtf16(const wchar_t*& at, const wchar_t* end);
inline Character ReadUtf16(const wchar_t*& at, const wchar_t* end) {
    const auto unit = static_cast<Character>(*at);
    return unit < 0xD800 ? (++at, unit) : ReadHighUtf16(at, end);
}

inline Units<wchar_t, 2> WriteUtf16(Character character) {
    if (character < 0x10000) return {{static_cast<wchar_t>(character)}, 1};
    const Character offset = character - 0x10000;
    return {{static_cast<wchar_t>(0xD800 + (offset >> 10)), static_cast<wchar_t>(0xDC00 + (offset & 0x3FF))},
            2};
}

}  // namespace platform
