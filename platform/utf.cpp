#include "platform/utf.h"

namespace platform {

namespace {

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// How many bytes follow a lead byte; 0 for those that start nothing (80 to C1, F5 to FF).
int ContinuationCount(unsigned char lead) {
    if (lead < 0xC2 || lead > 0xF4) return 0;
    return lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
}

// The second byte decides whether lead and second can begin a character: no overlong form, surrogate, or value
// above U+10FFFF can be recognised any later.
bool CanBegin(unsigned char lead, unsigned char second) {
    switch (lead) {
        case 0xE0:
            return second >= 0xA0;
        case 0xED:
            return second < 0xA0;
        case 0xF0:
            return second >= 0x90;
        case 0xF4:
            return second < 0x90;
        default:
            return true;
    }
}

bool IsSurrogate(Character unit) { return unit >= 0xD800 && unit <= 0xDFFF; }
bool IsHighSurrogate(Character unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(Character unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The bits of `character` that a continuation byte carries, counted from the last byte of the sequence.
char Continuation(Character character, int fromLast) {
    return static_cast<char>(0x80 | ((character >> (6 * fromLast)) & 0x3F));
}

}  // namespace

Character ReadLongUtf8(const char*& at, const char* end) {
    const auto lead = static_cast<unsigned char>(*at++);
    const int following = ContinuationCount(lead);
    Character character = lead & (0x3Fu >> following);
    for (int i = 0; i < following; ++i) {
        if (at == end || !IsContinuation(static_cast<unsigned char>(*at))) return kReplacement;
        const auto byte = static_cast<unsigned char>(*at++);
        if (i == 0 && !CanBegin(lead, byte)) return kReplacement;
        character = character << 6 | (byte & 0x3F);
    }
    return following == 0 ? kReplacement : character;
}

Character ReadHighUtf16(const wchar_t*& at, const wchar_t* end) {
    const auto unit = static_cast<Character>(*at++);
    if (unit > 0xFFFF) return kReplacement;
    if (!IsSurrogate(unit)) return unit;
    if (!IsHighSurrogate(unit) || at == end || !IsLowSurrogate(static_cast<Character>(*at)))
        return kReplacement;
    return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<Character>(*at++) - 0xDC00);
}

Units<char, 4> WriteLongUtf8(Character c) {
    if (c < 0x800) return {{static_cast<char>(0xC0 | c >> 6), Continuation(c, 0)}, 2};
    if (c < 0x10000) return {{static_cast<char>(0xE0 | c >> 12), Continuation(c, 1), Continuation(c, 0)}, 3};
    return {{static_cast<char>(0xF0 | c >> 18), Continuation(c, 2), Continuation(c, 1), Continuation(c, 0)}, 4};
}

std::wstring ToUtf16(std::string_view utf8) {
    std::wstring text;
    const char* at = utf8.data();
    for (const char* end = at + utf8.size(); at < end;) {
        const auto units = WriteUtf16(ReadUtf8(at, end));
        text.append(units.values, static_cast<std::size_t>(units.count));
    }
    return text;
}

std::string ToUtf8(std::wstring_view utf16) {
    std::string text;
    const wchar_t* at = utf16.data();
    for (const wchar_t* end = at + utf16.size(); at < end;) {
        const auto units = WriteUtf8(ReadUtf16(at, end));
        text.append(units.values, static_cast<std::size_t>(units.count));
    }
    return text;
}

}  // namespace platform
