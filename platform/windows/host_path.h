// From device paths (platform/device_path.h) to paths of the system.
#pragma once

#include <optional>
#include <string>

namespace platform {

// The folder given to SetDeviceRoot, with backslashes and without one at the end; empty when none was given.
const std::wstring& DeviceRoot();

// Without a device root the path as it is, so the system's own rules hold; with one, the path below it. Nothing
// for a null, empty or overlong path.
std::optional<std::wstring> FindOnHost(const wchar_t* path);

}  // namespace platform
