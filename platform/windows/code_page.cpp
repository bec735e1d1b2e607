// The system's own conversions; only code page 0 is ours, the page that SetAnsiCodePage chose.
#include "platform/code_page.h"

#include <windows.h>

#include "platform/device_state.h"

namespace platform {

namespace {
unsigned Resolved(unsigned codePage) { return codePage == kAnsiCodePage ? AnsiCodePage() : codePage; }

// Mainframes' pages have their letters elsewhere.
bool HoldsAscii(unsigned codePage) {
    for (int i = 0; i < 0x80; ++i) {
        const char byte = static_cast<char>(i);
        wchar_t unit = 0;
        const int length = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, &byte, 1, &unit, 1);
        if (length != 1 || unit != static_cast<wchar_t>(i) ||
            ::IsDBCSLeadByteEx(codePage, static_cast<BYTE>(i)))
            return false;
    }
    return true;
}
}  // namespace

int MultiByteToWideChar(unsigned codePage, const char* source, int length, wchar_t* destination, int size) {
    return ::MultiByteToWideChar(Resolved(codePage), 0, source, length, destination, size);
}

// No character becomes a similar one: it could be the separator of a path.
int WideCharToMultiByte(unsigned codePage, const wchar_t* source, int length, char* destination, int size) {
    const unsigned page = Resolved(codePage);
    const DWORD flags = page == kUtf8CodePage ? 0 : WC_NO_BEST_FIT_CHARS;
    return ::WideCharToMultiByte(page, flags, source, length, destination, size, nullptr, nullptr);
}

bool CanBeAnsiCodePage(unsigned codePage) {
    constexpr unsigned kLargestCharacter = 2;
    CPINFO page;
    if (codePage == kUtf8CodePage) return true;
    return codePage != kAnsiCodePage && ::GetCPInfo(codePage, &page) && page.MaxCharSize <= kLargestCharacter &&
           HoldsAscii(codePage);
}

bool IsDBCSLeadByte(unsigned char byte) {
    const unsigned page = AnsiCodePage();
    return page != kUtf8CodePage && ::IsDBCSLeadByteEx(page, byte) != 0;
}

}  // namespace platform
