#include "host/settings/user_folders.h"

#include <cstdlib>

namespace fs = std::filesystem;

namespace host {
namespace {

fs::path FromEnvironment(const char* variable) {
    const char* value = std::getenv(variable);
    return value == nullptr ? fs::path() : fs::path(value);
}

fs::path FolderIn(const char* variable, const char* belowHome) {
    if (const fs::path folder = FromEnvironment(variable); folder.is_absolute()) return folder;
    const fs::path home = FromEnvironment("HOME");
    return home.empty() ? home : home / belowHome;
}

}  // namespace

fs::path UserDataFolder() { return FolderIn("XDG_DATA_HOME", ".local/share"); }

fs::path UserSettingsFolder() { return FolderIn("XDG_CONFIG_HOME", ".config"); }

}  // namespace host
