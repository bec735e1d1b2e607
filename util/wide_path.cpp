#include "util/wide_path.h"

#include <cstring>

#include "platform/code_page.h"
#include "util/paths.h"
#include "util/text.h"

std::wstring WidePath(const std::string& path) {
    wchar_t wide[paths::kMaxPath + 1] = {};
    AnsciToWchar(path.c_str(), wide, paths::kMaxPath);
    return wide;
}

std::string FileStem(const std::string& path) {
    const std::wstring wide = WidePath(path);
    const std::wstring name = wide.substr(wide.rfind(L'\\') + 1);
    constexpr int kRoom = 4 * paths::kMaxPath;  // a unit takes at most four bytes in any code page
    char stem[kRoom + 1] = {};
    WcharToChar(stem, name.substr(0, name.rfind(L'.')).c_str(), kRoom);
    return stem;
}

bool ReplaceInvalidFileNameCharacters(std::string& name) {
    bool replaced = false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (platform::IsDBCSLeadByte(static_cast<unsigned char>(name[i]))) {
            ++i;
        } else if (name[i] != '\0' && std::strchr(paths::kInvalidFileNameCharacters, name[i]) != nullptr) {
            name[i] = '_';
            replaced = true;
        }
    }
    return replaced;
}

std::string TrackFilePath(const std::string& folder, const std::string& name) {
    return folder + "\\" + name + ".gpx";
}
