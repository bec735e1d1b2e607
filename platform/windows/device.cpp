// The folder that stands for the device's root, and where the running program is.
#include "platform/device.h"

#include <windows.h>

#include "platform/device_state.h"
#include "platform/letter_case.h"
#include "platform/utf.h"
#include "platform/windows/host_path.h"

namespace {

constexpr wchar_t kLiteral[] = L"\\\\?\\";

// Never destroyed: a background thread may still look at it while the process ends.
std::wstring& TheRoot() {
    static std::wstring& root = *new std::wstring;
    return root;
}

// As the system spells it: from the drive on, with backslashes, without "." and "..".
std::wstring Absolute(const std::wstring& folder) {
    std::wstring whole(::GetFullPathNameW(folder.c_str(), 0, nullptr, nullptr), L'\0');
    if (whole.empty()) return folder;
    whole.resize(::GetFullPathNameW(folder.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    return whole;
}

// Without the short names that some file systems keep, as searches do not find them.
std::wstring WithLongNames(const std::wstring& path) {
    std::wstring whole(::GetLongPathNameW(path.c_str(), nullptr, 0), L'\0');
    if (whole.empty()) return path;
    whole.resize(::GetLongPathNameW(path.c_str(), whole.data(), static_cast<DWORD>(whole.size())));
    return whole;
}

std::wstring Literal(const std::wstring& folder) {
    if (folder.starts_with(kLiteral)) return folder;
    if (folder.starts_with(L"\\\\")) return kLiteral + (L"UNC" + folder.substr(1));
    return kLiteral + folder;
}

}  // namespace

void SetDeviceRoot(const std::string& hostFolder) {
    const bool isMachinesOwn = hostFolder.find_first_not_of("\\/") == std::string::npos;
    std::wstring folder = isMachinesOwn ? L"" : Literal(WithLongNames(Absolute(platform::ToUtf16(hostFolder))));
    while (!folder.empty() && folder.back() == L'\\') folder.pop_back();
    TheRoot() = folder;
}

namespace platform {

const std::wstring& DeviceRoot() { return TheRoot(); }

std::wstring ExecutableOnDevice() {
    constexpr DWORD kLongestPath = 32768;
    std::wstring executable(kLongestPath, L'\0');
    executable.resize(::GetModuleFileNameW(nullptr, executable.data(), kLongestPath));
    executable = WithLongNames(executable);
    if (TheRoot().empty() || executable.empty()) return executable;
    const std::wstring root = TheRoot() + L'\\', literal = Literal(executable);
    const bool isBelow = EqualIgnoringCase(std::wstring_view(literal).substr(0, root.size()), root);
    return isBelow ? literal.substr(TheRoot().size()) : executable;
}

}  // namespace platform
