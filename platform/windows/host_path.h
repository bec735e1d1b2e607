// From device paths (platform/device_path.h) to paths of the system, which are given to it in their literal
// form
// (\\?\...): so it neither limits them to 259 characters nor finds its own meaning in a name.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/device_path.h"
#include "platform/file.h"

namespace platform {

// The folder given to SetDeviceRoot in literal form, without a backslash at the end; empty when none was given.
const std::wstring& DeviceRoot();

// Where a device path leads on this machine.
struct HostPath {
    std::wstring folder;  // literal, without a backslash at the end
    std::wstring name;    // empty: the path is the device's root
    bool endsInSeparator;

    std::wstring Text() const { return folder + L'\\' + name; }
    bool IsRoot() const { return name.empty(); }
};

// Nothing when a name is none for a file, or the last one the short name of another. Without a device root a
// path that begins with a drive is that of the machine, and every other one starts at the current drive's root.
std::optional<HostPath> FindOnHost(const DevicePath& path);
std::optional<HostPath> FindOnHost(const wchar_t* path);

// The same for a path that may stand for a file: the root and paths that end in a separator do not.
std::optional<HostPath> FindFileOnHost(const wchar_t* path);

// What is there, a link followed to what it leads to; nothing when there is neither file nor folder.
struct Found {
    bool isFolder;
    bool isReadOnly;
    DWORD attributes;
    FILETIME creationTime;
    FILETIME lastWriteTime;
    FileState state;
};
std::optional<Found> LookAt(const std::wstring& hostPath);

FileState StateIn(const BY_HANDLE_FILE_INFORMATION& status);

}  // namespace platform
