// The settings of platform/device.h, and where the running program is.
#include "platform/device.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/code_page.h"
#include "platform/device_state.h"
#include "platform/file.h"
#include "platform/posix/code_page_table.h"
#include "platform/posix/device_root.h"
#include "platform/posix/utf.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned kChineseCodePage = 936;

struct Settings {
    std::string deviceRoot;
    std::wstring programFolder;
    std::wstring storageCardRoot = L"\\SDMMC";
    unsigned ansiCodePage = kChineseCodePage;
};

// Never destroyed: a background thread may still look at it while the process ends.
Settings& TheSettings() {
    static Settings& settings = *new Settings;
    return settings;
}

std::string WithoutTrailingSlashes(std::string folder) {
    while (!folder.empty() && folder.back() == '/') folder.pop_back();
    return folder;
}

// Below the device root the executable has a path of the device; elsewhere its path on this machine has to do.
std::string RelativeToDeviceRoot(const std::string& executable) {
    std::error_code unresolvable;
    const fs::path realRoot = fs::canonical(platform::DeviceRoot() + "/", unresolvable);
    const std::string root = WithoutTrailingSlashes(realRoot.string());
    const bool isBelow = executable.compare(0, root.size() + 1, root + "/") == 0;
    return !unresolvable && isBelow ? executable.substr(root.size()) : executable;
}

std::wstring ExecutableOnDevice() {
    std::error_code unreadable;
    const std::string executable = fs::read_symlink("/proc/self/exe", unreadable).string();
    std::wstring path = platform::ToUtf16(RelativeToDeviceRoot(executable));
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

}  // namespace

void SetDeviceRoot(const std::string& hostFolder) {
    std::error_code noCurrentFolder;
    const fs::path absolute = hostFolder.empty() ? fs::path() : fs::absolute(hostFolder, noCurrentFolder);
    TheSettings().deviceRoot = WithoutTrailingSlashes(noCurrentFolder ? hostFolder : absolute.string());
}

void SetProgramFolder(const std::wstring& folder) { TheSettings().programFolder = folder; }

void SetStorageCardRoot(const std::wstring& folder) { TheSettings().storageCardRoot = folder; }

bool SetAnsiCodePage(unsigned codePage) {
    if (codePage != platform::kUtf8CodePage && platform::FindCodePageTable(codePage) == nullptr) return false;
    TheSettings().ansiCodePage = codePage;
    return true;
}

namespace platform {

const std::string& DeviceRoot() { return TheSettings().deviceRoot; }

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
