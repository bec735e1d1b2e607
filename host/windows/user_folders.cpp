#include "host/settings/user_folders.h"

#include "host/settings/environment.h"
#include "host/text/utf8_path.h"

namespace host {

std::filesystem::path UserDataFolder() { return PathOf(Environment("LOCALAPPDATA")); }

std::filesystem::path UserSettingsFolder() { return PathOf(Environment("APPDATA")); }

}  // namespace host
