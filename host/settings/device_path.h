// Paths as the library writes them, below the device's root: "\UserData\Track".
#pragma once

#include <filesystem>
#include <string>

#include "host/settings/device_folder.h"

namespace host {

// A folder below the device folder, as the settings name it: "UserData/Track" is "\UserData\Track".
std::string DevicePath(const std::string& folder);

// The file of this machine behind a path of the library, which is in the code page of the settings.
std::filesystem::path FileOf(const DeviceFolder& device, const std::string& devicePath);

}  // namespace host
