#include "host/settings/device_folder.h"

#include <cstdint>
#include <cstdlib>
#include <system_error>

#include "host/settings/host_settings.h"
#include "host/settings/user_folders.h"

namespace fs = std::filesystem;

namespace host {
namespace {

// A full recording saved without any thinning takes about 1.5 MB.
constexpr std::uintmax_t kRoomForASave = 4'000'000;

fs::path FromEnvironment(const char* variable) {
    const char* value = std::getenv(variable);
    return value == nullptr ? fs::path() : fs::path(value);
}

}  // namespace

fs::path DefaultDeviceFolder() {
    if (const fs::path device = FromEnvironment("QTRACE_DEVICE"); !device.empty()) return device;
    const fs::path data = UserDataFolder();
    return data.empty() ? data : data / "qtrace";
}

bool IsDeviceInEnvironment() { return !FromEnvironment("QTRACE_DEVICE").empty(); }

DeviceFolder::DeviceFolder(const HostSettings& settings)
    : m_root(fs::absolute(settings.device).lexically_normal()),
      m_tracks((m_root / settings.tracks).make_preferred()),
      m_cardTracks((m_root / settings.cardTracks).make_preferred()) {}

std::optional<std::string> DeviceFolder::Prepare() const {
    for (const fs::path& folder : {Recording(), Tracks()}) {
        std::error_code problem;
        fs::create_directories(folder, problem);
        if (problem) return "the folder " + folder.string() + " cannot be made: " + problem.message();
    }
    return std::nullopt;
}

bool DeviceFolder::HasRoom() const {
    std::error_code unknown;
    const fs::space_info space = fs::space(m_root, unknown);
    return !unknown && space.available >= kRoomForASave;
}

}  // namespace host
