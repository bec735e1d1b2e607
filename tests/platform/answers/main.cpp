// platform_answers: asks the platform services thousands of questions in a device of its own.
#include <cstdio>

#include "platform/device.h"
#include "tests/platform/answers/answers.h"
#include "tests/support/machine.h"

namespace answers {

void Print(const std::string& call, const std::string& answer) {
    std::printf("%s => %s\n", call.c_str(), answer.c_str());
}

namespace {

template <class Text>
std::string HexOf(Text text, int digits) {
    std::string hex;
    for (const auto unit : text) {
        char number[16];
        const unsigned mask = digits == 2 ? 0xFF : 0xFFFF;
        std::snprintf(number, sizeof number, "%s%0*x", hex.empty() ? "" : " ", digits,
                      static_cast<unsigned>(unit) & mask);
        hex += number;
    }
    return hex;
}

}  // namespace

std::string Hex(std::wstring_view units) { return HexOf(units, 4); }

std::string Hex(std::string_view bytes) { return HexOf(bytes, 2); }

std::string Quoted(std::wstring_view path) {
    constexpr std::size_t kShown = 40;
    std::string text = "\"";
    for (const wchar_t unit : path.substr(0, kShown)) {
        if (unit >= L' ' && unit < 0x7F)
            text += static_cast<char>(unit);
        else
            text += "<" + Hex(std::wstring_view(&unit, 1)) + ">";
    }
    return text + (path.size() > kShown ? "\" of " + std::to_string(path.size()) : "\"");
}

}  // namespace answers

int main() {
    const std::filesystem::path root = MakeTemporaryFolder();
    SetDeviceRoot(ToUtf8(root));
    answers::CodePages();
    answers::Calendar();
    answers::Searches();
    answers::FileNames();
    answers::Lengths();
    answers::Streams();
    RemoveFolder(root);
}
