#include "host/text/xml_encoding.h"

#include <algorithm>

#include <CLI/StringTools.hpp>

namespace host {
namespace {

bool HasUtf8Mark(std::string_view beginning) { return beginning.starts_with("\xEF\xBB\xBF"); }

// How many bytes the character has that begins with this one; 0 when none does.
std::size_t LengthFrom(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xc2 && lead < 0xe0) return 2;
    if (lead >= 0xe0 && lead < 0xf0) return 3;
    return lead >= 0xf0 && lead < 0xf5 ? 4 : 0;
}

// Neither written with more bytes than it needs, nor half of a pair, nor beyond the last character.
bool IsSecondByteGood(unsigned char lead, unsigned char second) {
    const unsigned char low = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    return second >= low && second <= high;
}

// Of the character's bytes, those that are as they should be, from the first on.
std::size_t GoodBytes(const unsigned char* bytes, std::size_t available) {
    std::size_t good = 1;
    while (good < available &&
           (good == 1 ? IsSecondByteGood(bytes[0], bytes[1]) : (bytes[good] & 0xc0) == 0x80))
        ++good;
    return good;
}

}  // namespace

std::string DeclaredEncoding(std::string_view beginning) {
    const std::string_view declaration = beginning.substr(0, beginning.find('>'));
    const std::size_t at = declaration.find("encoding");
    if (!declaration.starts_with("<?xml") || at == std::string_view::npos) return "";
    const std::size_t open = declaration.find_first_of("'\"", at);
    if (open == std::string_view::npos) return "";
    const std::string_view rest = declaration.substr(open + 1);
    return CLI::detail::to_lower(std::string(rest.substr(0, rest.find_first_of("'\""))));
}

const char* EncodingAgainstDeclaration(std::string_view beginning) {
    if (HasUtf8Mark(beginning)) return "UTF-8";
    const std::string declared = DeclaredEncoding(beginning);
    return declared.starts_with("utf-16") || declared == "unicode" ? "UTF-8" : nullptr;
}

bool IsUtf8(std::string_view beginning) {
    if (EncodingAgainstDeclaration(beginning) != nullptr) return true;
    if (beginning.starts_with("\xFF\xFE") || beginning.starts_with("\xFE\xFF")) return false;
    if (beginning.substr(0, 2).find('\0') != std::string_view::npos) return false;
    const std::string declared = DeclaredEncoding(beginning);
    return declared.empty() || declared == "utf-8" || declared == "utf8";
}

std::size_t MendUtf8(char* bytes, std::size_t size, bool isLast, std::uint64_t& replaced) {
    auto* text = reinterpret_cast<unsigned char*>(bytes);
    std::size_t at = 0;
    while (at < size) {
        const std::size_t length = LengthFrom(text[at]), available = std::min(length, size - at);
        const std::size_t good = length == 0 ? 0 : GoodBytes(text + at, available);
        if (good == available && available < length && !isLast) break;  // the rest comes with the next piece
        if (length != 0 && good == length) {
            at += length;
        } else {
            text[at++] = '?';
            ++replaced;
        }
    }
    return at;
}

}  // namespace host
