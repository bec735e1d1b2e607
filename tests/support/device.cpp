#include "tests/support/device.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "platform/device.h"
#include "tests/support/machine.h"

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() : m_path(MakeTemporaryFolder()) {}

TemporaryFolder::~TemporaryFolder() { RemoveFolder(m_path); }

DeviceTest::DeviceTest() {
    fs::create_directory(m_root.Path() / "App");
    SetDeviceRoot(ToUtf8(m_root.Path()));
    SetProgramFolder(L"\\App");
    SetAnsiCodePage(936);
}

DeviceTest::~DeviceTest() {
    SetDeviceRoot("");
    SetProgramFolder(L"");
    SetStorageCardRoot(L"\\SDMMC");
    SetAnsiCodePage(936);
}

fs::path DeviceTest::OnDisk(const std::string& devicePath) const {
    std::string relative = devicePath;
    std::replace(relative.begin(), relative.end(), '\\', '/');
    relative.erase(0, relative.find_first_not_of('/'));
    return AnyLength(m_root.Path() / FromUtf8(relative));
}

std::string DeviceTest::BytesOf(const std::string& devicePath) const { return ReadFile(OnDisk(devicePath)); }

void DeviceTest::Write(const std::string& devicePath, const std::string& bytes) const {
    fs::create_directories(OnDisk(devicePath).parent_path());
    WriteFile(OnDisk(devicePath), bytes);
}

bool DeviceTest::Exists(const std::string& devicePath) const { return fs::exists(OnDisk(devicePath)); }

void DeviceTest::MakeReadOnly(const std::string& devicePath) const {
    fs::permissions(OnDisk(devicePath), fs::perms(0444));
}

std::string ReadFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + ToUtf8(file));
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) throw std::runtime_error("cannot write " + ToUtf8(file));
}
