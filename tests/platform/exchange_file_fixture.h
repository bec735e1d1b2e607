// A device whose files are exchanged for new ones.
#pragma once

#include <iterator>
#include <string>

#include "platform/file.h"
#include "tests/support/device.h"

class ExchangeFile : public DeviceTest {
 protected:
    std::size_t FilesIn(const std::string& folder) const {
        const auto entries = std::filesystem::directory_iterator(OnDisk(folder));
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
};
