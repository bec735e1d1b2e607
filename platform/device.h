// How this machine stands for the device: four settings, made before anything else of the library is called.
// They are process-wide and not guarded: set them on one thread, before any other thread uses the library.
#pragma once

#include <string>

#include "util/export.h"

// The folder of this machine (UTF-8) that stands for the device's root `\`; device path \A\b.gpx is
// hostFolder/A/b.gpx. Empty, the default: the machine's own root. No device path ever leads above this
// folder. Has no effect on Windows, whose root is the current drive's, unless a folder is given, which is then
// put in front likewise.
QTRACE_API void SetDeviceRoot(const std::string& hostFolder);

// What GetInitGlobalPath() returns: a device path without trailing backslash.
// Empty, the default: the folder of the running executable.
QTRACE_API void SetProgramFolder(const std::wstring& folder);

// The device path of the storage card's root folder; the default is \SDMMC.
QTRACE_API void SetStorageCardRoot(const std::wstring& folder);

// The code page of narrow texts and paths: 936 (the default), 1252, 65001, and what else the system's converter
// knows. False, with nothing changed, for a number it does not know, and for pages that do not hold ASCII in
// its place or take more than two bytes a character: device paths and track names could not be read in them.
QTRACE_API bool SetAnsiCodePage(unsigned codePage);
