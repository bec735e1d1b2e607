#include "host/text/extension.h"

#include "host/text/utf8_path.h"

namespace host {

std::string ExtensionOf(const std::filesystem::path& file) {
    std::string extension = Utf8Of(file.extension());
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return extension;
}

}  // namespace host
