#include "tests/support/recorded_data.h"

#include <algorithm>

namespace fs = std::filesystem;

std::optional<fs::path> RecordedFile(const std::string& folder, const std::string& name) {
    fs::path file = fs::path(QTRACE_RECORDED_DATA) / folder / name;
    if (!fs::is_regular_file(file)) return std::nullopt;
    return file;
}

std::vector<fs::path> RecordedFiles(const std::string& folder) {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(fs::path(QTRACE_RECORDED_DATA) / folder, missing))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}
