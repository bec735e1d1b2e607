// Temporary folders in memory, for tests that would spend their time waiting for storage.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "tests/support/machine.h"

// Named as a base before the fixture, keeps the files of a test in memory where the system offers that.
class FilesInMemory {
 protected:
    FilesInMemory() {
        std::error_code missing;
        if (!std::filesystem::is_directory(kMemory, missing)) return;
        m_variable.emplace(kTemporaryFolderVariable, kMemory);
        if (!IsAnythingMade()) m_variable.reset();
    }

 private:
    static bool IsAnythingMade() {
        try {
            RemoveFolder(MakeTemporaryFolder());
            return true;
        } catch (const std::runtime_error&) {
            return false;  // the folder is there and closed, or full
        }
    }

    static constexpr const char* kMemory = "/dev/shm";

    std::optional<EnvironmentVariable> m_variable;
};
