// One background thread at a time, ended by consent: whoever stops it asks, and the thread's body looks at
// StopRequested() between its steps.
#pragma once

#include "platform/find.h"

namespace platform {

// Starts a thread. kInvalidHandle when the system refuses. The handle stays valid until CloseHandle, or, when
// nobody closes it, until the thread has ended; nothing is left behind by handles that are never closed.
Handle CreateThread(unsigned long (*body)(void*), void* argument);

// 4 means below normal. False for a handle that is none; where a priority needs rights that the process lacks,
// the request is a wish, and true.
bool SetThreadPriority(Handle thread, int priority);

// Asks the thread to stop and waits, for a bounded time, until it has ended. Called by the thread itself it
// only asks. True when the thread has ended by then.
bool TerminateThread(Handle thread);

bool CloseHandle(Handle thread);

// On a thread made by CreateThread: whether TerminateThread was called for it. False on all others.
bool StopRequested();

}  // namespace platform
