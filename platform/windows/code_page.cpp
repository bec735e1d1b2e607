// The system's own conversions; only code page 0 is ours, the page that SetAnsiCodePage chose.
#include "platform/code_page.h"

#include <windows.h>

#include "platform/device_state.h"

namespace platform {

namespace {
unsigned Resolved(unsigned codePage) { return codePage == kAnsiCodePage ? AnsiCodePage() : codePage; }
}  // namespace

int MultiByteToWideChar(unsigned codePage, const char* source, int length, wchar_t* destination, int size) {
    return ::MultiByteToWideChar(Resolved(codePage), 0, source, length, destination, size);
}

int WideCharToMultiByte(unsigned codePage, const wchar_t* source, int length, char* destination, int size) {
    return ::WideCharToMultiByte(Resolved(codePage), 0, source, length, destination, size, nullptr, nullptr);
}

bool IsDBCSLeadByte(unsigned char byte) {
    const unsigned page = AnsiCodePage();
    return page != kUtf8CodePage && ::IsDBCSLeadByteEx(page, byte) != 0;
}

}  // namespace platform
