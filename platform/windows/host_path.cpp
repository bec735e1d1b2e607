#include "platform/windows/host_path.h"

#include "platform/device_path.h"

namespace platform {

std::optional<std::wstring> FindOnHost(const wchar_t* path) {
    const auto parsed = ParseDevicePath(path);
    if (!parsed) return std::nullopt;
    if (DeviceRoot().empty()) return path;
    std::wstring below = DeviceRoot();
    for (const std::wstring& name : parsed->names) below += L'\\' + name;
    return parsed->endsInSeparator || parsed->names.empty() ? below + L'\\' : below;
}

}  // namespace platform
