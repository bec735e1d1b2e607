#include "host/tracks/track_name.h"

#include <algorithm>
#include <string_view>

#include "host/text/display_width.h"
#include "host/text/text.h"
#include "qtrace.h"

namespace host {
namespace {

bool NoFileNameHolds(char c) { return std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos; }

std::string Trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

void DropLastCharacter(std::string& utf8) {
    while (!utf8.empty() && (static_cast<unsigned char>(utf8.back()) & 0xc0) == 0x80) utf8.pop_back();
    if (!utf8.empty()) utf8.pop_back();
}

}  // namespace

// The cutting is done in UTF-8, where a character's end shows, and each shorter beginning is tried in the code
// page.
std::string CutName(const std::string& name, std::size_t bytes) {
    std::string text = ToUtf8(name), cut = name;
    while (cut.size() > bytes) {
        DropLastCharacter(text);
        cut = FromUtf8(text);
    }
    return cut;
}

TrackName MakeTrackName(const std::string& text) {
    std::string name = ReplaceControls(Trimmed(text), '_');
    std::replace_if(name.begin(), name.end(), NoFileNameHolds, '_');
    const std::string fitting = Trimmed(ToUtf8(CutName(FromUtf8(name), kLongestName)));
    return {FromUtf8(fitting), fitting != text};
}

}  // namespace host
