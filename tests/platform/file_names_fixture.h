// Folders and files of a device by name, and the ways in which a system can move them.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/file.h"
#include "tests/support/device.h"
#include "tests/support/machine.h"

class FileNames : public DeviceTest {
 protected:
    void MakeFolder(const std::string& path) const { std::filesystem::create_directories(OnDisk(path)); }
    std::set<std::string> Names(const std::string& folder) const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(OnDisk(folder)))
            names.insert(ToUtf8(entry.path().filename()));
        return names;
    }
    bool IsFolder(const std::string& path) const { return std::filesystem::is_directory(OnDisk(path)); }
};

// How files are moved without replacing any: some systems have more than one way, and tests go each of them.
struct WayOfMoving {
    const char* name;
    void (*take)();
};
inline void PrintTo(const WayOfMoving& way, std::ostream* out) { *out << way.name; }

// The first is the one that is taken where nothing is said. Each system has its own:
// tests/platform/posix/ways_of_moving.cpp, tests/platform/windows/ways_of_moving.cpp.
std::vector<WayOfMoving> WaysOfMoving();

class Moving : public FileNames, public ::testing::WithParamInterface<WayOfMoving> {
 protected:
    Moving() { GetParam().take(); }
    ~Moving() override { WaysOfMoving().front().take(); }
};
