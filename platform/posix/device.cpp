// The folder that stands for the device's root, and where the running program is.
#include "platform/device.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/device_state.h"
#include "platform/posix/device_root.h"
#include "platform/utf.h"

namespace fs = std::filesystem;

namespace {

// Never destroyed: a background thread may still look at it while the process ends.
std::string& TheRoot() {
    static std::string& root = *new std::string;
    return root;
}

std::string WithoutTrailingSlashes(std::string folder) {
    while (!folder.empty() && folder.back() == '/') folder.pop_back();
    return folder;
}

// Below the device root the executable has a path of the device; elsewhere its path on this machine has to do.
std::string RelativeToDeviceRoot(const std::string& executable) {
    std::error_code unresolvable;
    const fs::path realRoot = fs::canonical(platform::DeviceRoot() + "/", unresolvable);
    const std::string root = WithoutTrailingSlashes(realRoot.string());
    const bool isBelow = executable.compare(0, root.size() + 1, root + "/") == 0;
    return !unresolvable && isBelow ? executable.substr(root.size()) : executable;
}

}  // namespace

void SetDeviceRoot(const std::string& hostFolder) {
    std::error_code noCurrentFolder;
    const fs::path absolute = hostFolder.empty() ? fs::path() : fs::absolute(hostFolder, noCurrentFolder);
    TheRoot() = WithoutTrailingSlashes(noCurrentFolder ? hostFolder : absolute.string());
}

namespace platform {

const std::string& DeviceRoot() { return TheRoot(); }

std::wstring ExecutableOnDevice() {
    std::error_code unreadable;
    const std::string executable = fs::read_symlink("/proc/self/exe", unreadable).string();
    std::wstring path = ToUtf16(RelativeToDeviceRoot(executable));
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

}  // namespace platform
