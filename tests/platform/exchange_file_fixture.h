// A device whose file a.gpx is exchanged for a new one.
#pragma once

#include <iterator>
#include <stdexcept>
#include <string>

#include "platform/file.h"
#include "tests/support/device.h"

class ExchangeFile : public DeviceTest {
 protected:
    // As it is now, for whoever begins to read it.
    static platform::FileState Read() {
        std::FILE* stream = platform::_wfopen(L"\\Track\\a.gpx", L"rb");
        const auto state = platform::StateOf(stream);
        platform::fclose(stream);
        if (!state) throw std::runtime_error("a.gpx cannot be read");
        return *state;
    }
    static bool Exchange(const platform::FileState& read, const std::string& bytes) {
        return platform::ExchangeFileContent(L"\\Track\\a.gpx", read, bytes);
    }

    std::size_t FilesIn(const std::string& folder) const {
        const auto entries = std::filesystem::directory_iterator(OnDisk(folder));
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
};
