// Temporary folders in memory, for tests that would spend their time waiting for storage.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

// Named as a base before the fixture, keeps the files of a test in memory where the system offers that.
class FilesInMemory {
 protected:
    FilesInMemory() {
        std::error_code missing;
        if (std::filesystem::is_directory(kMemory, missing)) setenv("TMPDIR", kMemory, 1);
    }
    ~FilesInMemory() {
        if (m_hadFolder)
            setenv("TMPDIR", m_folder.c_str(), 1);
        else
            unsetenv("TMPDIR");
    }

 private:
    static constexpr const char* kMemory = "/dev/shm";

    bool m_hadFolder = std::getenv("TMPDIR") != nullptr;
    std::string m_folder = m_hadFolder ? std::getenv("TMPDIR") : "";
};
