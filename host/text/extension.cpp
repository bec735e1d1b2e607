#include "host/text/extension.h"

namespace host {

std::string ExtensionOf(const std::filesystem::path& file) {
    std::string extension = file.extension().string();
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return extension;
}

}  // namespace host
