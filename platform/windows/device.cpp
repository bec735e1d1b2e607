// The settings of platform/device.h, and where the running program is.
#include "platform/device.h"

#include <windows.h>

#include <algorithm>

#include "platform/code_page.h"
#include "platform/device_state.h"
#include "platform/file.h"
#include "platform/windows/host_path.h"

namespace {

constexpr unsigned kChineseCodePage = 936;

struct Settings {
    std::wstring deviceRoot;
    std::wstring programFolder;
    std::wstring storageCardRoot = L"\\SDMMC";
    unsigned ansiCodePage = kChineseCodePage;
};

// Never destroyed: a background thread may still look at it while the process ends.
Settings& TheSettings() {
    static Settings& settings = *new Settings;
    return settings;
}

std::wstring FromUtf8(const std::string& text) {
    std::wstring wide(text.size(), L'\0');  // never more units than bytes
    const int length =
        platform::MultiByteToWideChar(platform::kUtf8CodePage, text.data(), static_cast<int>(text.size()),
                                      wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

}  // namespace

void SetDeviceRoot(const std::string& hostFolder) {
    std::wstring folder = FromUtf8(hostFolder);
    std::replace(folder.begin(), folder.end(), L'/', L'\\');
    while (!folder.empty() && folder.back() == L'\\') folder.pop_back();
    TheSettings().deviceRoot = folder;
}

void SetProgramFolder(const std::wstring& folder) { TheSettings().programFolder = folder; }

void SetStorageCardRoot(const std::wstring& folder) { TheSettings().storageCardRoot = folder; }

bool SetAnsiCodePage(unsigned codePage) {
    constexpr unsigned kLargestCharacter = 2;
    CPINFO page;
    if (codePage == platform::kAnsiCodePage || !::GetCPInfo(codePage, &page)) return false;
    if (codePage != platform::kUtf8CodePage && page.MaxCharSize > kLargestCharacter) return false;
    TheSettings().ansiCodePage = codePage;
    return true;
}

namespace platform {

const std::wstring& DeviceRoot() { return TheSettings().deviceRoot; }

std::wstring ProgramFolder() { return TheSettings().programFolder; }

const std::wstring& StorageCardRoot() { return TheSettings().storageCardRoot; }

unsigned AnsiCodePage() { return TheSettings().ansiCodePage; }

unsigned GetModuleFileNameW(wchar_t* path, unsigned size) {
    wchar_t executable[32768];  // the longest path of the system
    const unsigned length =
        ::GetModuleFileNameW(nullptr, executable, static_cast<DWORD>(std::size(executable)));
    if (length == 0 || path == nullptr || size == 0) return 0;
    std::wstring_view rest(executable, length);
    const std::wstring& root = DeviceRoot();
    const bool isBelow = !root.empty() && length > root.size() && executable[root.size()] == L'\\' &&
                         _wcsnicmp(executable, root.c_str(), root.size()) == 0;
    if (isBelow) rest.remove_prefix(root.size());
    const std::size_t copied = std::min<std::size_t>(rest.size(), size - 1);
    path[rest.copy(path, copied)] = L'\0';
    return copied == rest.size() ? static_cast<unsigned>(copied) : size;
}

}  // namespace platform
