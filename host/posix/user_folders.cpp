#include "host/settings/user_folders.h"

#include "host/settings/environment.h"

namespace fs = std::filesystem;

namespace host {
namespace {

fs::path FolderIn(const char* variable, const char* belowHome) {
    if (const fs::path folder = Environment(variable); folder.is_absolute()) return folder;
    const fs::path home = Environment("HOME");
    return home.empty() ? home : home / belowHome;
}

}  // namespace

fs::path UserDataFolder() { return FolderIn("XDG_DATA_HOME", ".local/share"); }

fs::path UserSettingsFolder() { return FolderIn("XDG_CONFIG_HOME", ".config"); }

}  // namespace host
