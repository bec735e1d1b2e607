// The configuration file: settings that hold unless the command line says otherwise. They are the options
// themselves: whatever has a default value on the command line can stand in the file, as `color`, or as
// `record.mode` for an option of a command. Written by `qtrace config`; its text:
// host/settings/configuration_text.h.
#pragma once

#include <filesystem>
#include <istream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <CLI/ConfigFwd.hpp>

#include "host/settings/cli_names.h"

namespace host {

struct Setting {
    std::string key;
    CLI::Option* option;
};

// All there are, in the order of the help.
std::vector<Setting> SettingsOf(CLI::App& app);
std::optional<Setting> FindSetting(CLI::App& app, const std::string& key);

// Gives the option this value, as if the command line had. Otherwise says what is wrong with the value.
std::optional<std::string> Assign(const Setting& setting, const std::string& value);

// How the argument library reads the file. A line that is no setting, or whose value the option does not take,
// is a problem of the file as a whole.
class Configuration : public CLI::Config {
 public:
    explicit Configuration(CLI::App& app) : m_app(app) {}

    std::string to_config(const CLI::App* app, bool defaults, bool descriptions,
                          std::string prefix) const override;
    std::vector<CLI::ConfigItem> from_config(std::istream& input) const override;

    // Reads a file that the argument library cannot find, and takes its name away.
    void ReadInItsPlace(std::string& name);

    std::filesystem::path File() const;  // empty: there is no home to put it in
    // "FILE:LINE: what is wrong", or why a file that is there cannot be read.
    std::optional<std::string> Problem() const;
    bool IsFromFile(const std::string& key) const { return m_lines.contains(key); }

 private:
    std::optional<std::string> Take(const std::string& text, int number, std::string& section) const;

    // The base class reads through a const operation, and the options are where its result goes.
    CLI::App& m_app;
    mutable bool m_wasRead = false;
    mutable std::optional<std::string> m_problem;
    std::filesystem::path m_file;                // that was read in the argument library's place; else empty
    mutable std::map<std::string, int> m_lines;  // where each key stands
};

// Adds --config. A file with a problem ends every command with code 2 before it has begun, but for
// `config --path`.
void AddConfiguration(CLI::App& app);

// The configuration of an app to which it was added.
Configuration& ConfigurationOf(CLI::App& app);

}  // namespace host
