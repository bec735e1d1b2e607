#include "host/text/terminal.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace host {
namespace {

bool IsConsole(DWORD stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(stream), &mode) != 0;
}

std::size_t WidthOf(DWORD stream) {
    constexpr std::size_t kUsual = 80;
    CONSOLE_SCREEN_BUFFER_INFO screen;
    if (!::GetConsoleScreenBufferInfo(::GetStdHandle(stream), &screen)) return kUsual;
    return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
}

// The console outlives the program, and others read it in the code page of before.
void TakeConsoleForUtf8() {
    static const UINT s_inputBefore = ::GetConsoleCP(), s_outputBefore = ::GetConsoleOutputCP();
    if (s_outputBefore == 0) return;
    ::SetConsoleCP(CP_UTF8);
    ::SetConsoleOutputCP(CP_UTF8);
    std::atexit([] {
        ::SetConsoleCP(s_inputBefore);
        ::SetConsoleOutputCP(s_outputBefore);
    });
}

// Each output in one piece: the C library would hand the bytes of a letter to a console one by one.
void WriteInPieces(std::FILE* stream) {
    constexpr std::size_t kPiece = 65536;
    std::setvbuf(stream, nullptr, _IOFBF, kPiece);
}

bool UnderstandsEscapes(DWORD stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(stream), &mode) != 0 &&
           (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

// Colors and the line that is drawn anew are asked for as on other terminals. Old systems know neither.
void UnderstandEscapes(DWORD stream) {
    DWORD mode = 0;
    if (::GetConsoleMode(::GetStdHandle(stream), &mode))
        ::SetConsoleMode(::GetStdHandle(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

}  // namespace

void PrepareStandardStreams() {
    for (int stream = 0; stream <= 2; ++stream) {
        if (_get_osfhandle(stream) < 0) _wopen(L"NUL", _O_RDWR);
        _setmode(stream, _O_BINARY);
    }
    WriteInPieces(stdout);
    WriteInPieces(stderr);
    TakeConsoleForUtf8();
    UnderstandEscapes(STD_OUTPUT_HANDLE);
    UnderstandEscapes(STD_ERROR_HANDLE);
}

bool IsTerminalForAnswers() { return IsConsole(STD_INPUT_HANDLE); }
bool IsTerminalForMessages() { return UnderstandsEscapes(STD_ERROR_HANDLE); }
std::size_t WidthOfMessages() { return WidthOf(STD_ERROR_HANDLE); }
std::size_t WidthOfResults() { return UnderstandsEscapes(STD_OUTPUT_HANDLE) ? WidthOf(STD_OUTPUT_HANDLE) : 0; }

}  // namespace host
