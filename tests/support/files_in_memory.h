// Temporary folders in memory, for tests that would spend their time waiting for storage.
#pragma once

#include <filesystem>
#include <optional>
#include <system_error>

#include "tests/support/machine.h"

// Named as a base before the fixture, keeps the files of a test in memory where the system offers that.
class FilesInMemory {
 protected:
    FilesInMemory() {
        std::error_code missing;
        if (std::filesystem::is_directory(kMemory, missing))
            m_variable.emplace(kTemporaryFolderVariable, kMemory);
    }

 private:
    static constexpr const char* kMemory = "/dev/shm";

    std::optional<EnvironmentVariable> m_variable;
};
