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

}  // namespace platform
