// What the four settings of platform/device.h were set to, for the rest of the library. Read-only, any thread.
#pragma once

#include <string>

namespace platform {

// As given to SetProgramFolder; empty: not set, so the folder of the running executable counts.
std::wstring ProgramFolder();

// As given to SetStorageCardRoot, \SDMMC when nothing was.
const std::wstring& StorageCardRoot();

// The number that kAnsiCodePage stands for; never 0.
unsigned AnsiCodePage();

// The rest is each system's own: platform/posix, platform/windows.

// Whether SetAnsiCodePage takes it.
bool CanBeAnsiCodePage(unsigned codePage);

// The running executable: its device path, or outside of the device's root its path on this machine, with
// backslashes. Empty when the system does not say.
std::wstring ExecutableOnDevice();

}  // namespace platform
