// The folder of this machine that stands for the device's root, as platform/posix/host_path.cpp needs it.
#pragma once

#include <string>

namespace platform {

// UTF-8, absolute, without a trailing slash: empty for the machine's own root.
const std::string& DeviceRoot();

}  // namespace platform
