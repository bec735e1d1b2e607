#include "util/text.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>

#include "platform/code_page.h"

namespace {

using platform::kAnsiCodePage;
using platform::kUtf8CodePage;

int Length(const char* text) { return static_cast<int>(std::strlen(text)); }
int Length(const wchar_t* text) { return static_cast<int>(std::wcslen(text)); }

// The text as UTF-16, with its terminator; empty when it does not convert.
std::wstring Widen(unsigned codePage, const char* text) {
    const int units = platform::MultiByteToWideChar(codePage, text, -1, nullptr, 0);
    if (units < 1) return {};
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    platform::MultiByteToWideChar(codePage, text, Length(text) + 1, wide.data(), units);
    return wide;
}

// KEPT: one byte up to U+00FF and two beyond, whatever the code page really takes. Names were cut by this rule
// on every device, so another one would give the same track another name. Pinned by
// WideToAnsi.UnitsFrom100_CountTwoThoughTheyTakeOne.
int AssumedWidth(wchar_t unit) { return (unit & 0xFF00) == 0 ? 1 : 2; }

// How many bytes of the text stay when at most `room` fit, without splitting a character.
int BytesThatFit(const wchar_t* text, int room) {
    int length = 0;
    for (; *text != L'\0' && length < room; ++text) {
        const int width = AssumedWidth(*text);
        if (length + width > room) break;
        length += width;
    }
    return length;
}

void CutToFit(char* dst, const wchar_t* src, int dstSize, int need) {
    std::string whole(static_cast<std::size_t>(need) + 1, '\0');
    platform::WideCharToMultiByte(kAnsiCodePage, src, Length(src) + 1, whole.data(), need + 1);
    const int length = BytesThatFit(src, dstSize);
    std::strncpy(dst, whole.c_str(), static_cast<std::size_t>(std::max(length, 0)));
}

template <typename Text>
void UpLatinLetters(Text& text) {
    for (auto& letter : text)
        if (letter >= 'a' && letter <= 'z') letter = static_cast<typename Text::value_type>(letter - 'a' + 'A');
}

}  // namespace

int AnsicToUTF_8(const char* src, char* dst, int dstSize) {
    const std::wstring wide = Widen(kAnsiCodePage, src);
    if (wide.empty()) return -1;
    const int units = static_cast<int>(wide.size());
    platform::WideCharToMultiByte(kUtf8CodePage, wide.data(), units, dst, dstSize);
    return units;
}

int UTF_8ToAnsic(const char* src, char* dst, int dstSize) {
    const std::wstring wide = Widen(kUtf8CodePage, src);
    if (wide.empty()) return -1;
    WcharToChar(dst, wide.c_str(), dstSize);
    return static_cast<int>(wide.size());
}

void AnsciToWchar(const char* src, wchar_t* dst, int dstCount) {
    if (src == nullptr) return;
    const int units = platform::MultiByteToWideChar(kAnsiCodePage, src, Length(src), nullptr, 0);
    const int room = std::min(units, dstCount);
    if (room == 0) return;  // asked for room 0 the conversion would only answer how much it needs
    platform::MultiByteToWideChar(kAnsiCodePage, src, Length(src), dst, room);
}

void WcharToChar(char* dst, const wchar_t* src, int dstSize) {
    if (src == nullptr) return;
    const int need = platform::WideCharToMultiByte(kAnsiCodePage, src, Length(src), nullptr, 0);
    if (need > dstSize) return CutToFit(dst, src, dstSize, need);
    std::memset(dst, 0, static_cast<std::size_t>(dstSize));
    // KEPT: the terminator may land one byte behind dstSize; the arrays of all callers are sized for it.
    // Pinned by WideToAnsi.TextThatFillsTheDestination_IsTerminatedOnePastIt.
    platform::WideCharToMultiByte(kAnsiCodePage, src, Length(src) + 1, dst, need + 1);
}

void ChangeStringToWString(std::wstring& out, const std::string& in) {
    constexpr int kRoom = 260;
    wchar_t wide[kRoom + 1] = {};
    AnsciToWchar(in.c_str(), wide, kRoom);
    out = wide;
}

// Letters are folded by hand: the C library's folding follows the process's locale, in which bytes from 0x80
// on, halves of double-byte characters here, may be letters.
void UpString(std::string& s) { UpLatinLetters(s); }

void UpWString(std::wstring& s) { UpLatinLetters(s); }
