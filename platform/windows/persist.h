// What scanners and indexers do to a file passes: they look at it when it was written, and let go of it again.
#pragma once

#include <windows.h>

namespace platform {

// Whether a file may be free a moment later. Access is also denied while a deleted file is still open
// somewhere, and for good where rights are missing: then the wait is in vain.
inline bool MayPass(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED ||
           error == ERROR_USER_MAPPED_FILE;
}

// Calls until it succeeds, fails for something that stays, or the last attempt has failed; that one's error is
// the system's last one then. Waits for 180 ms at most.
template <class Call>
bool Persist(Call call) {
    constexpr int kAttempts = 10;
    constexpr DWORD kPause = 20;  // [ms]
    for (int attempt = 1; !call(); ++attempt) {
        if (attempt == kAttempts || !MayPass(::GetLastError())) return false;
        ::Sleep(kPause);
    }
    return true;
}

}  // namespace platform
