#include "host/settings/configuration.h"

#include <exception>
#include <fstream>
#include <memory>
#include <system_error>

#include <CLI/CLI.hpp>

#include "host/settings/configuration_text.h"
#include "host/settings/device_folder.h"
#include "host/settings/environment.h"
#include "host/settings/user_folders.h"
#include "host/text/file_bytes.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

// $QTRACE_CONFIG, else among the user's settings; empty when there is no home.
std::string DefaultFile() {
    if (const std::string file = Environment("QTRACE_CONFIG"); !file.empty()) return file;
    const fs::path folder = UserSettingsFolder();
    return folder.empty() ? "" : Utf8Of(folder / "qtrace" / "config.toml");
}

// Where the argument library would read it: by narrow text, which on Windows is not read as UTF-8.
bool IsFoundByNarrowText(const std::string& file) { return fs::path(file) == PathOf(file); }

// An option without a default belongs to one call alone, as --yes does.
bool IsSetting(const CLI::Option& option) {
    const bool hasDefault = option.get_group() == "Settings" || !option.get_default_str().empty();
    return option.get_configurable() && !option.get_lnames().empty() && hasDefault;
}

void AddSettingsOf(CLI::App& app, const std::string& prefix, std::vector<Setting>& settings) {
    for (CLI::Option* option : app.get_options())
        if (IsSetting(*option)) settings.push_back({prefix + option->get_lnames().front(), option});
}

std::string WithoutOptionName(const std::string& message, const CLI::Option& option) {
    const std::string name = option.get_name() + ": ";
    return message.starts_with(name) ? message.substr(name.size()) : message;
}

bool AsksForPath(const CLI::App& app) {
    for (const CLI::App* command : app.get_subcommands())
        if (command->get_name() == "config" && command->count("--path") != 0) return true;
    return false;
}

}  // namespace

std::vector<Setting> SettingsOf(CLI::App& app) {
    std::vector<Setting> settings;
    AddSettingsOf(app, "", settings);
    for (CLI::App* command : app.get_subcommands({}))
        AddSettingsOf(*command, command->get_name() + '.', settings);
    return settings;
}

std::optional<Setting> FindSetting(CLI::App& app, const std::string& key) {
    for (const Setting& setting : SettingsOf(app))
        if (setting.key == key) return setting;
    return std::nullopt;
}

std::optional<std::string> Assign(const Setting& setting, const std::string& value) {
    CLI::Option& option = *setting.option;
    const bool isFlag = option.get_expected_min() == 0;
    option.clear();
    try {
        option.add_result(isFlag ? option.get_flag_value(option.get_lnames().front(), value) : value);
        option.run_callback();
        return std::nullopt;
    } catch (const std::exception& problem) {
        option.clear();  // or the argument library finds the same problem later, without the line
        if (isFlag) return value + " is neither true nor false";
        return WithoutOptionName(problem.what(), option);
    }
}

std::string Configuration::to_config(const CLI::App* app, bool defaults, bool descriptions,
                                     std::string prefix) const {
    return CLI::ConfigTOML().to_config(app, defaults, descriptions, std::move(prefix));
}

// The options are given their values here and now, where the line is known.
std::vector<CLI::ConfigItem> Configuration::from_config(std::istream& input) const {
    m_wasRead = true;
    std::string section;
    int number = 0;
    for (std::string line; !m_problem && std::getline(input, line);)
        if (const auto problem = Take(line, ++number, section))
            m_problem = Utf8Of(File()) + ':' + std::to_string(number) + ": " + *problem;
    return {};
}

std::optional<std::string> Configuration::Take(const std::string& text, int number,
                                               std::string& section) const {
    const ConfigurationLine line = ReadConfigurationLine(text);
    if (line.kind == ConfigurationLine::Kind::Bad) return line.problem;
    if (line.kind == ConfigurationLine::Kind::Section) section = line.name;
    if (line.kind != ConfigurationLine::Kind::Value) return std::nullopt;
    const std::string key = FullKey(section, line.name);
    const auto setting = FindSetting(m_app, key);
    if (!setting) return key + " is no setting";
    const auto [earlier, isFirst] = m_lines.try_emplace(key, number);
    if (!isFirst) return key + " is set in line " + std::to_string(earlier->second) + " already";
    // The command line goes first, and then the environment.
    if (setting->option->count() != 0 || (key == "device" && IsDeviceInEnvironment())) {
        m_lines.erase(earlier);
        return std::nullopt;
    }
    const auto problem = Assign(*setting, line.value);
    return problem ? std::optional(key + ": " + *problem) : std::nullopt;
}

// The argument library asks here in the moment before it reads the file, and again when it has.
void Configuration::ReadInItsPlace(std::string& name) {
    if (IsFoundByNarrowText(name)) return;
    m_file = PathOf(name);
    if (std::ifstream lines(m_file); !m_wasRead && lines) from_config(lines);
    if (m_wasRead) name.clear();  // there is nothing left to be read
}

fs::path Configuration::File() const {
    const auto files = m_app.get_config_ptr()->as<std::vector<std::string>>();
    if (!m_file.empty()) return m_file;
    return files.empty() ? fs::path() : PathOf(files.front());
}

std::optional<std::string> Configuration::Problem() const {
    const fs::path file = File();
    std::error_code unknown;
    if (m_problem || m_wasRead || file.empty() || !fs::exists(fs::symlink_status(file, unknown)))
        return m_problem;
    if (fs::is_directory(file, unknown))
        return Utf8Of(file) + " is a folder, and should be a file with settings";
    const FileReader opened(Utf8Of(file));
    if (opened.Problem().empty()) return std::nullopt;
    return Utf8Of(file) + " cannot be read: " + opened.Problem();
}

void AddConfiguration(CLI::App& app) {
    auto configuration = std::make_shared<Configuration>(app);
    const auto read = [configuration](std::string& name) {
        configuration->ReadInItsPlace(name);
        return std::string();
    };
    app.set_config("--config", DefaultFile(), "File with settings")
        ->group("Settings")
        ->type_name("FILE")
        ->transform(CLI::Validator(read, ""));
    app.config_formatter(configuration);
    app.parse_complete_callback([&app, configuration] {
        if (AsksForPath(app)) return;
        if (const auto problem = configuration->Problem()) throw CLI::ConfigError(*problem);
    });
}

Configuration& ConfigurationOf(CLI::App& app) {
    return dynamic_cast<Configuration&>(*app.get_config_formatter());
}

}  // namespace host
