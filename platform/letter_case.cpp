#include "platform/letter_case.h"

#include <algorithm>

namespace platform {

namespace {

// Small letters `first`, `first + step`, ... `last`, each `distance` above its capital.
struct SmallLetters {
    unsigned first;
    unsigned last;
    unsigned step;
    unsigned distance;
};

constexpr SmallLetters kSmallLetters[] = {
    {0x0061, 0x007A, 1, 32}, {0x00E0, 0x00F6, 1, 32}, {0x00F8, 0x00FE, 1, 32}, {0x0101, 0x012F, 2, 1},
    {0x0133, 0x0137, 2, 1},  {0x013A, 0x0148, 2, 1},  {0x014B, 0x0177, 2, 1},  {0x017A, 0x017E, 2, 1},
    {0x01CE, 0x01DC, 2, 1},  {0x01DF, 0x01EF, 2, 1},  {0x01F9, 0x021F, 2, 1},  {0x0223, 0x0233, 2, 1},
    {0x03AC, 0x03AC, 1, 38}, {0x03AD, 0x03AF, 1, 37}, {0x03B1, 0x03C1, 1, 32}, {0x03C3, 0x03CB, 1, 32},
    {0x03CC, 0x03CC, 1, 64}, {0x03CD, 0x03CE, 1, 63}, {0x0430, 0x044F, 1, 32}, {0x0450, 0x045F, 1, 80},
    {0x0461, 0x0481, 2, 1},  {0x048B, 0x04BF, 2, 1},  {0x04C2, 0x04CE, 2, 1},  {0x04D1, 0x052F, 2, 1},
    {0x0561, 0x0586, 1, 48}, {0x1E01, 0x1E95, 2, 1},  {0x1EA1, 0x1EFF, 2, 1},  {0x2170, 0x217F, 1, 16},
    {0x24D0, 0x24E9, 1, 26}, {0xFF41, 0xFF5A, 1, 32},
};

bool Holds(const SmallLetters& letters, unsigned unit) {
    return unit >= letters.first && unit <= letters.last && (unit - letters.first) % letters.step == 0;
}

int Compare(std::wstring_view a, std::wstring_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const wchar_t left = Capital(a[i]), right = Capital(b[i]);
        if (left != right) return left < right ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

}  // namespace

wchar_t Capital(wchar_t unit) {
    const auto code = static_cast<unsigned>(unit);
    if (code < 0x80) return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(code - 32) : unit;
    for (const SmallLetters& letters : kSmallLetters)
        if (Holds(letters, code)) return static_cast<wchar_t>(code - letters.distance);
    return unit;
}

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && Compare(a, b) == 0;
}

bool LessIgnoringCase(std::wstring_view a, std::wstring_view b) {
    const int order = Compare(a, b);
    return order != 0 ? order < 0 : a < b;
}

}  // namespace platform
