// One background thread at a time, ended by consent: whoever stops it asks, and the thread's body looks at
// StopRequested() between its steps.
#pragma once

#include "platform/find.h"

namespace platform {

// Starts a thread, which gets none of the process's signals. kInvalidHandle when the system refuses. The
// process may end while the thread runs. The handle is good until CloseHandle; one that is never closed holds
// nothing once its thread has ended, and then the operations below have nothing to do and answer true, also
// more than once.
Handle CreateThread(unsigned long (*body)(void*), void* argument);

// From 0, the highest, to 7, the lowest; 3 is normal and 4 below normal. False for a handle that is none; where
// a priority needs rights that the process lacks, the request is a wish, and true.
bool SetThreadPriority(Handle thread, int priority);

// Asks the thread to stop and waits until it has ended, for five seconds at most. Called by the thread itself
// it only asks. True when the thread has ended by then; false, with nothing asked, for a handle that is none.
bool TerminateThread(Handle thread);

// Gives the handle back; the thread runs on. False for a handle that is none, or was given back before.
bool CloseHandle(Handle thread);

// On a thread made by CreateThread: whether TerminateThread was called for it. False on all others.
bool StopRequested();

}  // namespace platform
