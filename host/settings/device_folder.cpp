#include "host/settings/device_folder.h"

#include <cstdint>
#include <system_error>

#include "host/settings/environment.h"
#include "host/settings/host_settings.h"
#include "host/settings/user_folders.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

// A full recording saved without any thinning takes about 1.5 MB.
constexpr std::uintmax_t kRoomForASave = 4'000'000;

}  // namespace

fs::path DefaultDeviceFolder() {
    if (const fs::path device = PathOf(Environment("QTRACE_DEVICE")); !device.empty()) return device;
    const fs::path data = UserDataFolder();
    return data.empty() ? data : data / "qtrace";
}

bool IsDeviceInEnvironment() { return !Environment("QTRACE_DEVICE").empty(); }

DeviceFolder::DeviceFolder(const HostSettings& settings)
    : m_root(fs::absolute(PathOf(settings.device)).lexically_normal()),
      m_tracks((m_root / PathOf(settings.tracks)).make_preferred()),
      m_cardTracks((m_root / PathOf(settings.cardTracks)).make_preferred()) {}

std::optional<std::string> DeviceFolder::Prepare() const {
    for (const fs::path& folder : {Recording(), Tracks()}) {
        std::error_code problem;
        fs::create_directories(folder, problem);
        if (problem) return "the folder " + Utf8Of(folder) + " cannot be made: " + problem.message();
    }
    return std::nullopt;
}

bool DeviceFolder::HasRoom() const {
    std::error_code unknown;
    const fs::space_info space = fs::space(m_root, unknown);
    return !unknown && space.available >= kRoomForASave;
}

}  // namespace host
