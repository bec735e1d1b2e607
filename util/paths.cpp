#include "util/paths.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/device_state.h"
#include "platform/file.h"
#include "platform/find.h"
#include "util/kept_leak.h"
#include "util/text.h"
#include "util/wide_path.h"

using paths::kMaxPath;

std::wstring GetInitGlobalPath() {
    const std::wstring chosen = platform::ProgramFolder();
    if (!chosen.empty()) return chosen;
    wchar_t program[kMaxPath] = {};
    platform::GetModuleFileNameW(program, kMaxPath);
    const std::wstring path = program;
    return path.substr(0, path.rfind(L'\\'));
}

void FileAbsolutPath(char* dst, const char* name, int dstSize, bool onCard) {
    const std::size_t needed = std::strlen(name) + 1;
    if (dstSize < 0 || needed >= static_cast<std::size_t>(dstSize)) return;
    // KEPT: never freed. Pinned by FullPathTest.ManyCalls_AreNoLeakToTheChecker. One byte more than the
    // conversion may fill, so that the folder ends in a terminator.
    char* folder = new char[static_cast<std::size_t>(dstSize) + 1]();
    KeepLeaked(folder);
    WcharToChar(folder, (onCard ? platform::StorageCardRoot() : GetInitGlobalPath()).c_str(), dstSize);
    std::sprintf(dst, "%s\\%s", folder, name);
}

bool CheckDirectoryExist(const std::wstring& path) {
    if (path.size() >= kMaxPath) return false;
    platform::FindData entry{};
    const platform::Handle search = platform::FindFirstFileW(path.c_str(), &entry);
    const bool found =
        search != platform::kInvalidHandle && (entry.attributes & platform::kDirectoryAttribute) != 0;
    platform::FindClose(search);
    return found;
}

bool CreateDir(const char* path) {
    wchar_t wide[kMaxPath + 1] = {};
    AnsciToWchar(path, wide, kMaxPath);
    return CheckDirectoryExist(wide) || platform::CreateDirectoryW(wide);
}

bool GetFileSuffixName(const std::wstring& path, std::wstring& suffix) {
    const std::size_t dot = path.rfind(L'.');
    if (dot == std::wstring::npos) return false;
    suffix = path.substr(dot + 1);
    return true;
}

namespace {

// How many bytes of the text fit without splitting a character of one byte (up to 0x7F) or two.
std::size_t BytesThatFit(const std::string& text, int room) {
    int length = 0;
    while (static_cast<std::size_t>(length) < text.size()) {
        const int width = static_cast<unsigned char>(text[static_cast<std::size_t>(length)]) > 0x7F ? 2 : 1;
        if (length + width > room) break;
        length += width;
    }
    return static_cast<std::size_t>(length);
}

}  // namespace

void GetString_1(const std::string& src, std::string& dst, int maxBytes, bool makeFileName) {
    const std::size_t length = std::min({BytesThatFit(src, maxBytes), src.size(), std::size_t{kMaxPath - 1}});
    std::string cut = src.substr(0, length);
    cut.resize(std::strlen(cut.c_str()));
    if (makeFileName) ReplaceInvalidFileNameCharacters(cut);
    dst = cut;
}
