// Ctrl-C, Ctrl-Break, a console window that is closed, and the end of the user's session.
#include "host/recording/stop_signals.h"

#include <io.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <system_error>

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The system calls the handler on a thread of its own.
HANDLE s_stop = nullptr;

BOOL WINAPI OnControl(DWORD what) {
    ::SetEvent(s_stop);
    // Behind these the process is ended as soon as this returns: so it does not, and the process ends itself
    // when all is saved. The system gives it some seconds.
    if (what != CTRL_C_EVENT && what != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
    return TRUE;
}

bool IsRequested(milliseconds atMost) {
    return ::WaitForSingleObject(s_stop, static_cast<DWORD>(atMost.count())) == WAIT_OBJECT_0;
}

// A pipe cannot be waited for, only asked. At its end there is something to read: that it has ended.
Awaited WaitForPipe(HANDLE pipe, milliseconds atMost) {
    constexpr milliseconds kLook{10};
    const auto end = steady_clock::now() + atMost;
    for (;;) {
        DWORD waiting = 0;
        if (!::PeekNamedPipe(pipe, nullptr, 0, nullptr, &waiting, nullptr) || waiting != 0)
            return Awaited::Ready;
        const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
        if (IsRequested(std::clamp(left, milliseconds(0), kLook))) return Awaited::Stop;
        if (left <= milliseconds(0)) return Awaited::TimeIsUp;
    }
}

Awaited WaitForConsole(HANDLE console, milliseconds atMost) {
    const std::array<HANDLE, 2> watched = {s_stop, console};
    const DWORD first = ::WaitForMultipleObjects(static_cast<DWORD>(watched.size()), watched.data(), FALSE,
                                                 static_cast<DWORD>(atMost.count()));
    if (first == WAIT_OBJECT_0) return Awaited::Stop;
    return first == WAIT_OBJECT_0 + 1 ? Awaited::Ready : Awaited::TimeIsUp;
}

Awaited WaitForHandle(HANDLE handle, milliseconds atMost) {
    DWORD mode = 0;
    if (::GetFileType(handle) == FILE_TYPE_PIPE) return WaitForPipe(handle, atMost);
    return ::GetConsoleMode(handle, &mode) ? WaitForConsole(handle, atMost) : Awaited::Ready;
}

}  // namespace

struct StopSignals::Watch {};

StopSignals::StopSignals() {
    s_stop = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (s_stop == nullptr || !::SetConsoleCtrlHandler(OnControl, TRUE))
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(),
                                "Ctrl-C cannot be watched");
}

// The event stays: a handler may be at work.
StopSignals::~StopSignals() { ::SetConsoleCtrlHandler(OnControl, FALSE); }

Awaited StopSignals::WaitForInput(int descriptor, milliseconds atMost) {
    const milliseconds time = std::max(atMost, milliseconds(0));
    m_requested = m_requested || IsRequested(milliseconds(0));
    if (m_requested) return Awaited::Stop;
    const Awaited awaited = WaitForHandle(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), time);
    m_requested = awaited == Awaited::Stop;
    return awaited;
}

bool StopSignals::Sleep(milliseconds time) {
    m_requested = m_requested || IsRequested(std::max(time, milliseconds(0)));
    return !m_requested;
}

}  // namespace host
