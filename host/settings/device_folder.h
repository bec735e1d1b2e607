// The folder of this machine that stands for the device's file tree, and how the host lays it out:
//   App/              the live recording's files
//   UserData/Track/   the saved tracks; recordings are saved here too, so that they appear in the library
//   SDMMC/Track/      the same on the storage card, when the settings say that it is there
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct HostSettings;

// Device paths of the layout.
inline constexpr const char* kProgramFolder = "\\App";
inline constexpr const char* kUserDataFolder = "\\UserData";

// $QTRACE_DEVICE, else $XDG_DATA_HOME/qtrace, else ~/.local/share/qtrace; empty when none of the three is set.
std::filesystem::path DefaultDeviceFolder();

// Whether $QTRACE_DEVICE names it: then the configuration file does not.
bool IsDeviceInEnvironment();

class DeviceFolder {
 public:
    explicit DeviceFolder(const HostSettings& settings);

    // Makes the folders that are missing. Otherwise says which one cannot be made, and why.
    std::optional<std::string> Prepare() const;

    const std::filesystem::path& Root() const { return m_root; }  // absolute
    std::filesystem::path Recording() const { return m_root / "App"; }
    const std::filesystem::path& Tracks() const { return m_tracks; }
    const std::filesystem::path& CardTracks() const { return m_cardTracks; }

    // Whether a whole recording can be saved and some room is left for the system.
    bool HasRoom() const;

 private:
    std::filesystem::path m_root;
    std::filesystem::path m_tracks;
    std::filesystem::path m_cardTracks;
};

}  // namespace host
