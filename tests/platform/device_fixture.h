// What a device path leads to, asked in few words.
#pragma once

#include <algorithm>
#include <string>

#include "platform/file.h"
#include "tests/support/device.h"

class Device : public DeviceTest {
 protected:
    static bool Makes(const std::wstring& path) {
        return platform::fclose(platform::_wfopen(path.c_str(), L"wb")) == 0;
    }
    static bool Opens(const std::wstring& path) {
        return platform::fclose(platform::_wfopen(path.c_str(), L"rb")) == 0;
    }
    static std::wstring Executable() {
        wchar_t path[1024];
        return {path, platform::GetModuleFileNameW(path, 1024)};
    }
    static std::wstring WithBackslashes(std::wstring path) {
        std::replace(path.begin(), path.end(), L'/', L'\\');
        return path;
    }
};
