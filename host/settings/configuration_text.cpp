#include "host/settings/configuration_text.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace host {
namespace {

constexpr const char* kBlanks = " \t\r";

std::string Trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

bool IsControl(char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f; }

std::string Unquoted(const std::string& name) {
    const bool isQuoted = name.size() > 1 && name.front() == name.back() && (name[0] == '"' || name[0] == '\'');
    return isQuoted ? name.substr(1, name.size() - 2) : name;
}

ConfigurationLine Bad(const std::string& problem) {
    ConfigurationLine line;
    line.kind = ConfigurationLine::Kind::Bad;
    line.problem = problem;
    return line;
}

// `begin`: of the quote in front.
ConfigurationLine ReadQuoted(const std::string& line, std::size_t begin) {
    const std::size_t end = line.find(line[begin], begin + 1);
    if (end == std::string::npos) return Bad("the quote is not closed");
    const std::size_t rest = line.find_first_not_of(kBlanks, end + 1);
    if (rest != std::string::npos && line[rest] != '#') return Bad("there is text behind the closing quote");
    ConfigurationLine result;
    result.value = line.substr(begin + 1, end - begin - 1);
    result.valueBegin = begin;
    result.valueEnd = end + 1;
    return result;
}

ConfigurationLine ReadBare(const std::string& line, std::size_t begin) {
    const std::size_t comment = std::min(line.find('#', begin), line.size());
    ConfigurationLine result;
    result.value = Trimmed(line.substr(begin, comment - begin));
    if (result.value.empty()) return Bad("there is no value behind the equals sign");
    if (result.value.find_first_of("\"'") != std::string::npos) return Bad("there is a quote within the value");
    result.valueBegin = begin;
    result.valueEnd = begin + result.value.size();
    return result;
}

ConfigurationLine ReadAssignment(const std::string& line) {
    const std::size_t equals = line.find('=');
    const std::string key = equals == std::string::npos ? "" : Unquoted(Trimmed(line.substr(0, equals)));
    if (key.empty()) return Bad("this is no line like key = value");
    const std::size_t begin = line.find_first_not_of(kBlanks, equals + 1);
    if (begin == std::string::npos) return Bad("there is no value behind the equals sign");
    const bool isQuoted = line[begin] == '"' || line[begin] == '\'';
    ConfigurationLine result = isQuoted ? ReadQuoted(line, begin) : ReadBare(line, begin);
    if (result.kind == ConfigurationLine::Kind::Bad) return result;
    result.kind = ConfigurationLine::Kind::Value;
    result.name = key;
    return result;
}

ConfigurationLine ReadSection(const std::string& text) {
    const std::size_t end = text.find(']');
    const std::string rest = end == std::string::npos ? "" : Trimmed(text.substr(end + 1));
    if (end == std::string::npos || (!rest.empty() && rest[0] != '#'))
        return Bad("this is no section like [record]");
    ConfigurationLine result;
    result.kind = ConfigurationLine::Kind::Section;
    result.name = Unquoted(Trimmed(text.substr(1, end - 1)));
    return result;
}

}  // namespace

ConfigurationLine ReadConfigurationLine(const std::string& line) {
    const std::string text = Trimmed(line);
    if (std::any_of(text.begin(), text.end(), IsControl)) return Bad("there are bytes in it that are no text");
    if (text.empty() || text[0] == '#' || text[0] == ';') return {};
    return text[0] == '[' ? ReadSection(text) : ReadAssignment(line);
}

std::string FullKey(const std::string& section, const std::string& key) {
    return section.empty() || section == "default" ? key : section + '.' + key;
}

ConfigurationText::ConfigurationText(const std::string& text) {
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) m_lines.push_back(line);
}

std::optional<std::size_t> ConfigurationText::Find(const std::string& key) const {
    std::string section;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const ConfigurationLine line = ReadConfigurationLine(m_lines[i]);
        if (line.kind == ConfigurationLine::Kind::Section) section = line.name;
        if (line.kind == ConfigurationLine::Kind::Value && FullKey(section, line.name) == key) return i;
    }
    return std::nullopt;
}

// Behind its last value, or behind its title. The part before the first section is always there.
std::optional<std::size_t> ConfigurationText::EndOfSection(const std::string& wanted) const {
    std::string section;
    std::optional<std::size_t> end;
    if (wanted.empty()) end = 0;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const ConfigurationLine line = ReadConfigurationLine(m_lines[i]);
        if (line.kind == ConfigurationLine::Kind::Section) section = line.name;
        const bool isContent = line.kind != ConfigurationLine::Kind::Nothing || section.empty();
        if (section == wanted && isContent) end = i + 1;
    }
    return end;
}

void ConfigurationText::Set(const std::string& key, const std::string& value) {
    if (const auto found = Find(key)) {
        const ConfigurationLine line = ReadConfigurationLine(m_lines[*found]);
        m_lines[*found].replace(line.valueBegin, line.valueEnd - line.valueBegin, value);
        return;
    }
    const std::size_t point = key.rfind('.');
    const std::string section = point == std::string::npos ? "" : key.substr(0, point);
    const auto ownSection = section.empty() ? std::nullopt : EndOfSection(section);
    const std::string name = ownSection ? key.substr(point + 1) : key;
    const std::size_t place = ownSection ? *ownSection : *EndOfSection("");
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(place), name + " = " + value);
}

bool ConfigurationText::Unset(const std::string& key) {
    const auto found = Find(key);
    if (found) m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(*found));
    return found.has_value();
}

std::string ConfigurationText::Text() const {
    std::string text;
    for (const std::string& line : m_lines) text += line + '\n';
    return text;
}

std::optional<std::string> QuotedValue(const std::string& value) {
    const bool isNumber = !value.empty() && value.find_first_not_of("0123456789") == std::string::npos &&
                          (value.size() == 1 || value[0] != '0');
    if (isNumber || value == "true" || value == "false") return value;
    if (std::any_of(value.begin(), value.end(), IsControl) || value.find('\n') != std::string::npos)
        return std::nullopt;
    // In TOML a backslash means something between double quotes, and nothing between single ones.
    const bool single = value.find_first_of("\"\\") != std::string::npos;
    if (single && value.find('\'') != std::string::npos) return std::nullopt;
    return single ? '\'' + value + '\'' : '"' + value + '"';
}

}  // namespace host
