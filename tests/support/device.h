// A device of its own for a test: a fresh folder of this machine stands for the device's file tree.
// Real recordings that live beside the project: tests/support/recorded_data.h.
#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

// A fresh temporary folder, removed with all it holds at the end.
class TemporaryFolder {
 public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::filesystem::path& Path() const { return m_path; }

 private:
    std::filesystem::path m_path;
};

// Makes a fresh folder the device's root, with the program in \App, and code page 936; restores the defaults at
// the end.
class DeviceTest : public ::testing::Test {
 protected:
    DeviceTest();
    ~DeviceTest() override;

    // The file of this machine that stands for a device path: \Track\a.gpx or /Track/a.gpx.
    std::filesystem::path OnDisk(const std::string& devicePath) const;
    std::string BytesOf(const std::string& devicePath) const;
    void Write(const std::string& devicePath, const std::string& bytes) const;
    bool Exists(const std::string& devicePath) const;
    void MakeReadOnly(const std::string& devicePath) const;

    TemporaryFolder m_root;
};

std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& bytes);
