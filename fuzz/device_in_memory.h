// A device folder of the fuzzer's own, in memory where the system offers that, removed at the end.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/device.h"

namespace fuzz {

// Aborts, as a sanitizer does, so that the input is kept.
inline void Require(bool holds) {
    if (!holds) std::abort();
}

class DeviceInMemory {
 public:
    DeviceInMemory() {
        namespace fs = std::filesystem;
        const fs::path memory = "/dev/shm";
        m_root = (fs::is_directory(memory) ? memory : fs::temp_directory_path()) /
                 ("qtrace-fuzz-" + std::to_string(getpid()));
        fs::create_directories(m_root / "App");
        fs::create_directories(m_root / "Track");
        SetDeviceRoot(m_root.string());
        SetProgramFolder(L"\\App");
        SetAnsiCodePage(936);
    }
    ~DeviceInMemory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }

    void Write(const std::string& path, const std::string& bytes) const {
        std::ofstream(m_root / path, std::ios::binary) << bytes;
    }
    std::string Read(const std::string& path) const {
        std::ifstream file(m_root / path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Remove(const std::string& path) const { std::filesystem::remove_all(m_root / path); }
    void MakeFolder(const std::string& path) const { std::filesystem::create_directories(m_root / path); }

 private:
    std::filesystem::path m_root;
};

inline DeviceInMemory& Device() {
    static DeviceInMemory device;
    return device;
}

// Splits the input: takes up to `size` bytes off its front.
inline std::string Take(std::string& input, std::size_t size) {
    const std::string front = input.substr(0, size);
    input.erase(0, front.size());
    return front;
}

// The next byte; 0 at the end.
inline unsigned TakeByte(std::string& input) {
    const std::string byte = Take(input, 1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte[0]);
}

}  // namespace fuzz
