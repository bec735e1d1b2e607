// Conversions: every two-byte sequence of page 936, every byte and unit of all pages, malformed UTF-8 and
// UTF-16, and destinations of every size around what is needed.
#include <vector>

#include "platform/code_page.h"
#include "platform/device.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

constexpr unsigned kChinese = 936, kWestern = 1252, kUtf8 = 65001;

// What a conversion left in a buffer that was filled with '#'; of one that failed only what lies behind its
// room counts.
template <class Unit>
std::string Left(const std::vector<Unit>& buffer, int result, int size) {
    const std::basic_string<Unit> all(buffer.begin(), buffer.end());
    const auto from = static_cast<std::size_t>(result > 0 || size <= 0 ? 0 : size);
    std::string text = std::to_string(result) + " [" + (from > 0 ? "... " : "");
    return text + Hex(std::basic_string_view<Unit>(all).substr(from)) + "]";
}

void Widen(unsigned page, const std::string& bytes, int length, int size) {
    std::vector<wchar_t> buffer(bytes.size() + 3, L'#');
    const int result = platform::MultiByteToWideChar(page, bytes.c_str(), length, buffer.data(), size);
    Print("widen " + std::to_string(page) + " [" + Hex(bytes) + "] length " + std::to_string(length) +
              " size " + std::to_string(size),
          Left(buffer, result, size));
}

void Narrow(unsigned page, const std::wstring& units, int length, int size) {
    std::vector<char> buffer(units.size() * 3 + 6, '#');
    const int result = platform::WideCharToMultiByte(page, units.c_str(), length, buffer.data(), size);
    Print("narrow " + std::to_string(page) + " [" + Hex(units) + "] length " + std::to_string(length) +
              " size " + std::to_string(size),
          Left(buffer, result, size));
}

void Widen(unsigned page, const std::string& bytes) {
    Widen(page, bytes, static_cast<int>(bytes.size()), static_cast<int>(bytes.size()) + 1);
}

void Narrow(unsigned page, const std::wstring& units) {
    Narrow(page, units, static_cast<int>(units.size()), static_cast<int>(units.size()) * 3 + 3);
}

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes += static_cast<char>(value);
    return bytes;
}

void AllOf936() {
    for (int lead = 0; lead <= 0xFF; ++lead) {
        Widen(kChinese, Bytes({lead}));
        for (int trail = 0; trail <= 0xFF; ++trail) Widen(kChinese, Bytes({lead, trail}));
    }
    for (int unit = 0; unit < 0x10000; ++unit) Narrow(kChinese, std::wstring(1, static_cast<wchar_t>(unit)));
}

void AllOf1252() {
    for (int byte = 0; byte <= 0xFF; ++byte) Widen(kWestern, Bytes({byte}));
    for (int unit = 0; unit < 0x3000; ++unit) Narrow(kWestern, std::wstring(1, static_cast<wchar_t>(unit)));
}

// Every lead with the second bytes at which something changes, cut after one to four bytes, and followed by a
// letter.
void MalformedUtf8() {
    for (int lead = 0x80; lead <= 0xFF; ++lead)
        for (const int second : {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC2, 0xE4, 0xFF})
            for (const char* tail : {"", "a", "ab", "\x80", "\x80z", "\x80\xBF", "\x80\xBFz", "\xC3\xA4z"})
                Widen(kUtf8, Bytes({lead, second}) + tail);
    for (int lead = 0x80; lead <= 0xFF; ++lead) Widen(kUtf8, Bytes({lead}));
}

void SurrogatesToUtf8() {
    const wchar_t units[] = {0x0041, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFEFF, 0xFFFF};
    for (const wchar_t a : units)
        for (const wchar_t b : units)
            for (const wchar_t c : units)
                for (const unsigned page : {kUtf8, kChinese, kWestern}) Narrow(page, {a, b, c});
}

void EverySize() {
    const std::string texts[] = {
        "", "a", "abc", "a\xD6\xD0z", "\xD6\xD0\xB9\xFA", "a\xC4", "\xE4\xB8\xAD\xC3\xA4", "\xF0\x9F\x98\x80!"};
    for (const std::string& text : texts)
        for (const unsigned page : {0u, kChinese, kWestern, kUtf8, 12345u})
            for (int length = -2; length <= static_cast<int>(text.size()); ++length)
                for (int size = -1; size <= static_cast<int>(text.size()) + 2; ++size)
                    Widen(page, text, length, size);
    const std::wstring wides[] = {
        L"", L"a", L"abc", L"a\x4E2Dz", L"\x4E2D\x56FD", L"\xE4\x20AC", L"\xD83D\xDE00!"};
    for (const std::wstring& text : wides)
        for (const unsigned page : {0u, kChinese, kWestern, kUtf8, 12345u})
            for (int length = -2; length <= static_cast<int>(text.size()); ++length)
                for (int size = -1; size <= static_cast<int>(text.size()) * 3 + 1; ++size)
                    Narrow(page, text, length, size);
}

void Page(unsigned page) {
    const bool isTaken = SetAnsiCodePage(page);
    std::string leads;
    for (int byte = 0; isTaken && byte <= 0xFF; ++byte)
        if (platform::IsDBCSLeadByte(static_cast<unsigned char>(byte))) leads += static_cast<char>(byte);
    Print("ansi page " + std::to_string(page), YesNo(isTaken) + " [" + Hex(leads) + "]");
    SetAnsiCodePage(kChinese);
}

void PagesAndLeadBytes() {
    for (const unsigned page : {kChinese, kWestern, kUtf8, 932u, 949u, 950u, 0u, 37u, 1200u, 1361u, 12345u,
                                20127u, 20866u, 21866u, 50220u, 54936u, 65000u})
        Page(page);
    for (unsigned page = 1250; page <= 1258; ++page) Page(page);
    for (unsigned page = 28591; page <= 28605; ++page) Page(page);
    for (const unsigned page : {20127u, 20866u, 21866u, 28591u, 28592u, 28593u, 28594u, 28595u, 28596u, 28597u,
                                28598u, 28599u, 28603u, 28605u})
        for (int byte = 0; byte <= 0xFF; ++byte) Widen(page, Bytes({byte}));
}

}  // namespace

void CodePages() {
    AllOf936();
    AllOf1252();
    MalformedUtf8();
    SurrogatesToUtf8();
    EverySize();
    PagesAndLeadBytes();
}

}  // namespace answers
