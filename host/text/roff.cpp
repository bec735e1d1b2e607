#include "host/text/roff.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <sstream>

namespace host {
namespace {

const std::map<char, std::string> kEscapes = {{'\\', "\\e"},  {'-', "\\-"},   {'\'', "\\(aq"},
                                              {'`', "\\(ga"}, {'^', "\\(ha"}, {'~', "\\(ti"}};

// The bytes of the character that begins with `lead`.
std::size_t CharacterBytes(unsigned char lead) {
    return lead < 0xc0 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
}

std::string NamedByNumber(unsigned character) {
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), character, 16).ptr;
    std::string number(digits.data(), end);
    for (char& digit : number)
        if (digit >= 'a') digit = static_cast<char>(digit - 'a' + 'A');
    return "\\[u" + std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number + ']';
}

std::string BeyondAscii(const std::string& bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    unsigned character = bytes.size() == 1 ? lead : lead & (0x7fu >> bytes.size());
    for (std::size_t i = 1; i < bytes.size(); ++i)
        character = character << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3fu);
    return NamedByNumber(character);
}

}  // namespace

std::string Roff(const std::string& utf8) {
    std::string text;
    for (std::size_t i = 0; i < utf8.size();) {
        const std::size_t bytes = CharacterBytes(static_cast<unsigned char>(utf8[i]));
        const auto escape = kEscapes.find(utf8[i]);
        if (escape != kEscapes.end())
            text += escape->second;
        else if (static_cast<unsigned char>(utf8[i]) < 0x80)
            text += utf8[i];
        else
            text += BeyondAscii(utf8.substr(i, bytes));
        i += bytes;
    }
    return text.starts_with('.') ? "\\&" + text : text;  // a dot at the beginning of a line makes a request
}

std::string Bold(const std::string& utf8) { return "\\fB" + Roff(utf8) + "\\fR"; }
std::string Italic(const std::string& utf8) { return "\\fI" + Roff(utf8) + "\\fR"; }

std::string RoffParagraphs(const std::string& utf8) {
    std::istringstream lines(utf8);
    std::string out;
    bool asItStands = false, parted = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.find_first_not_of(' ') == std::string::npos) {
            parted = !out.empty();
            continue;
        }
        const bool indented = line.starts_with(' ');
        if (asItStands && !indented) out += ".fi\n";
        if (parted) out += ".PP\n";
        if (!asItStands && indented) out += ".nf\n";
        out += Roff(line) + '\n';
        asItStands = indented;
        parted = false;
    }
    return asItStands ? out + ".fi\n" : out;
}

}  // namespace host
