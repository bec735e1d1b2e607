// The text of a configuration file: lines `key = value`, `[section]` and `# comment`, a part of TOML. What the
// keys mean: host/settings/configuration.h.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct ConfigurationLine {
    enum class Kind { Nothing, Section, Value, Bad };
    Kind kind = Kind::Nothing;
    std::string name;                          // of the section, or of the key
    std::string value;                         // without quotes
    std::size_t valueBegin = 0, valueEnd = 0;  // where it stands in the line, quotes included
    std::string problem;                       // what is wrong with a bad one
};

ConfigurationLine ReadConfigurationLine(const std::string& line);

// "record" and "mode" make "record.mode"; the section "default" is none.
std::string FullKey(const std::string& section, const std::string& key);

// The lines of a configuration, to be changed: comments, order and all other lines stay.
class ConfigurationText {
 public:
    explicit ConfigurationText(const std::string& text);

    // `key` in full. The value takes the old one's place, or stands in a new line of the key's section.
    void Set(const std::string& key, const std::string& value);
    // False when it is not set.
    bool Unset(const std::string& key);
    std::string Text() const;

 private:
    std::optional<std::size_t> Find(const std::string& key) const;
    std::optional<std::size_t> EndOfSection(const std::string& section) const;

    std::vector<std::string> m_lines;
};

// The value as a file takes it; nothing for one that no line can hold (control characters, both quotes).
std::optional<std::string> QuotedValue(const std::string& value);

}  // namespace host
