// Where the user's programs keep what is theirs. One form a system: host/posix, host/windows.
#pragma once

#include <filesystem>

namespace host {

// Folders of all programs; empty when there is no home. POSIX: $XDG_DATA_HOME, else ~/.local/share, and
// $XDG_CONFIG_HOME, else ~/.config. Windows: %LOCALAPPDATA% and %APPDATA%.
std::filesystem::path UserDataFolder();
std::filesystem::path UserSettingsFolder();

}  // namespace host
