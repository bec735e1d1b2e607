#include "host/settings/device_path.h"

#include <algorithm>

#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {

std::string DevicePath(const std::string& folder) {
    std::string path = '\\' + folder;
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

fs::path FileOf(const DeviceFolder& device, const std::string& devicePath) {
    std::string path = ToUtf8(devicePath);
    std::replace(path.begin(), path.end(), '\\', '/');
    return (device.Root() / PathOf(path).relative_path()).make_preferred();
}

}  // namespace host
