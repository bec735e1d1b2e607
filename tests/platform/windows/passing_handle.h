// Another handle of a file, of a program that shares it with nobody, and lets go of it after a while.
#pragma once

#include <windows.h>

#include <filesystem>
#include <thread>

class PassingHandle {
 public:
    explicit PassingHandle(const std::filesystem::path& file)
        : m_hFile(::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)),
          m_thread([this] {
              ::Sleep(40);
              if (IsOpen()) ::CloseHandle(m_hFile);
          }) {}
    ~PassingHandle() { m_thread.join(); }
    PassingHandle(const PassingHandle&) = delete;
    PassingHandle& operator=(const PassingHandle&) = delete;

    bool IsOpen() const { return m_hFile != INVALID_HANDLE_VALUE; }

 private:
    HANDLE m_hFile;
    std::thread m_thread;
};
