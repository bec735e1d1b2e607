// Texts between the code pages, cut and made fit for files, into buffers of every size.
#include <cstring>
#include <vector>

#include "fuzz/device_in_memory.h"
#include "util/numbers.h"
#include "util/paths.h"
#include "util/text.h"
#include "util/time.h"

namespace {

void Convert(const std::string& text, int room) {
    std::vector<char> narrow(static_cast<std::size_t>(room) + 1);
    AnsicToUTF_8(text.c_str(), narrow.data(), room);
    UTF_8ToAnsic(text.c_str(), narrow.data(), room);
    std::vector<wchar_t> wide(text.size() + 1);
    AnsciToWchar(text.c_str(), wide.data(), static_cast<int>(text.size()));
    WcharToChar(narrow.data(), wide.data(), room);
    std::wstring string;
    ChangeStringToWString(string, text);
    UpWString(string);
}

void CutAndRead(const std::string& text, int room) {
    std::string cut;
    GetString_1(text, cut, room, true);
    fuzz::Require(cut.size() <= static_cast<std::size_t>(room) + 1);
    wchar_t wide[300] = {};
    AnsciToWchar(cut.c_str(), wide, 299);  // second bytes of characters may look like separators, they are none
    fuzz::Require(std::wstring(wide).find_first_of(L"/\\:") == std::wstring::npos);
    SYSTEMTIME time{};
    DTSTR2SYS(text, time);
    numbers::ParseReal(text);
    numbers::ParseInteger(text);
    std::wstring suffix;
    GetFileSuffixName(std::wstring(text.begin(), text.end()), suffix);
    CheckDirectoryExist(std::wstring(text.begin(), text.end()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    fuzz::Device();
    constexpr unsigned kPages[] = {936, 1252, 65001, 932};
    SetAnsiCodePage(kPages[fuzz::TakeByte(input) % 4]);
    const int room = static_cast<int>(fuzz::TakeByte(input));
    const std::string text = input.c_str();
    Convert(text, room);
    CutAndRead(text, room);
    return 0;
}
