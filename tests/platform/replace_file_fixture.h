// A device whose files get a new content, and one that holds the temporary files.
#pragma once

#include <string>

#include "platform/file.h"
#include "tests/support/device.h"
#include "tests/support/machine.h"

class ReplacingContent : public DeviceTest {
 protected:
    auto FileCount(const std::string& folder) const {
        return std::distance(std::filesystem::directory_iterator(OnDisk(folder)), {});
    }
};

class TemporaryFiles : public DeviceTest {
 protected:
    const EnvironmentVariable m_folder{kTemporaryFolderVariable, ToUtf8(m_root.Path())};
};
