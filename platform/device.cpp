// The settings of platform/device.h but for the device's root, which each system keeps in its own form.
#include "platform/device.h"

#include <algorithm>

#include "platform/device_state.h"
#include "platform/file.h"

namespace {

constexpr unsigned kChineseCodePage = 936;

struct Settings {
    std::wstring programFolder;
    std::wstring storageCardRoot = L"\\SDMMC";
    unsigned ansiCodePage = kChineseCodePage;
};

// Never destroyed: a background thread may still look at it while the process ends.
Settings& TheSettings() {
    static Settings& settings = *new Settings;
    return settings;
}

}  // namespace

void SetProgramFolder(const std::wstring& folder) { TheSettings().programFolder = folder; }

void SetStorageCardRoot(const std::wstring& folder) { TheSettings().storageCardRoot = folder; }

bool SetAnsiCodePage(unsigned codePage) {
    if (!platform::CanBeAnsiCodePage(codePage)) return false;
    TheSettings().ansiCodePage = codePage;
    return true;
}

namespace platform {

std::wstring ProgramFolder() { return TheSettings().programFolder; }

const std::wstring& StorageCardRoot() { return TheSettings().storageCardRoot; }

unsigned AnsiCodePage() { return TheSettings().ansiCodePage; }

unsigned GetModuleFileNameW(wchar_t* path, unsigned size) {
    const std::wstring executable = ExecutableOnDevice();
    if (path == nullptr || size == 0 || executable.empty()) return 0;
    const std::size_t length = std::min<std::size_t>(executable.size(), size - 1);
    std::copy_n(executable.begin(), length, path);
    path[length] = L'\0';
    return length == executable.size() ? static_cast<unsigned>(length) : size;
}

}  // namespace platform
