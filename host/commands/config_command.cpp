// `qtrace config`: what is set, and where; and setting it. The file: host/settings/configuration.h.
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <system_error>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/settings/configuration.h"
#include "host/settings/configuration_text.h"
#include "host/settings/device_folder.h"
#include "host/text/json.h"
#include "host/text/output_file.h"
#include "host/text/table.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

struct Arguments {
    std::string key, value;
    bool unset = false, path = false, json = false;
};

int Fail(const std::string& message) { return host::Fail("config", message); }

int WrongUsage(const std::string& message) {
    Fail(message);
    return kWrongUsage;
}

std::string ValueOf(const Setting& setting) {
    const CLI::Option& option = *setting.option;
    return option.count() != 0 ? option.results().back() : option.get_default_str();
}

std::string OriginOf(const Configuration& configuration, const Setting& setting) {
    if (configuration.IsFromFile(setting.key)) return "file";
    if (setting.option->count() != 0) return "command line";
    return setting.key == "device" && IsDeviceInEnvironment() ? "environment" : "default";
}

int PrintAll(CLI::App& app, bool json) {
    const Configuration& configuration = ConfigurationOf(app);
    Table table({{"KEY"}, {"VALUE"}, {"FROM"}});
    Json object = Json::object();
    for (const Setting& setting : SettingsOf(app)) {
        const std::string value = ValueOf(setting), origin = OriginOf(configuration, setting);
        table.AddRow({setting.key, value, origin});
        object[setting.key] = {{"value", value}, {"from", origin}};
    }
    if (json)
        PrintJson(object);
    else
        table.Print(std::cout, 0);
    return kDone;
}

std::string TextOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// A relative folder lies where the user is now, not where the next command happens to be called.
std::string StoredValue(const Setting& setting, const std::string& value) {
    if (setting.key != "device") return value;
    return Utf8Of(std::filesystem::absolute(PathOf(value)).lexically_normal());
}

int Set(const Configuration& configuration, const Setting& setting, const std::string& value) {
    if (const auto problem = Assign(setting, value)) return WrongUsage(setting.key + ": " + *problem);
    const auto quoted = QuotedValue(StoredValue(setting, value));
    if (!quoted) return WrongUsage("a file of settings cannot hold that value");
    ConfigurationText text(TextOf(configuration.File()));
    text.Set(setting.key, *quoted);
    if (const auto problem = ReplaceContent(configuration.File(), text.Text())) return Fail(*problem);
    return kDone;
}

int Unset(const Configuration& configuration, const Setting& setting) {
    ConfigurationText text(TextOf(configuration.File()));
    if (!text.Unset(setting.key)) return Fail(setting.key + " is not set in " + Utf8Of(configuration.File()));
    if (const auto problem = ReplaceContent(configuration.File(), text.Text())) return Fail(*problem);
    return kDone;
}

int Config(const Arguments& arguments, bool hasValue, CLI::App& app) {
    const Configuration& configuration = ConfigurationOf(app);
    if (arguments.path) {
        std::cout << Utf8Of(configuration.File()) << '\n';
        return kDone;
    }
    if (arguments.key.empty())
        return arguments.unset ? WrongUsage("unset what?") : PrintAll(app, arguments.json);
    const auto setting = FindSetting(app, arguments.key);
    if (!setting) return WrongUsage(arguments.key + " is no setting; `qtrace config` lists them");
    if (!arguments.unset && !hasValue) {
        std::cout << ValueOf(*setting) << '\n';
        return kDone;
    }
    if (configuration.File().empty()) return Fail("there is no home folder for the file; --config names one");
    return arguments.unset ? Unset(configuration, *setting) : Set(configuration, *setting, arguments.value);
}

}  // namespace

void AddConfigCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "config", "Print the settings, or change one for good");
    auto* key = command.add_option("KEY", arguments->key, "One setting, such as record.mode")->type_name("");
    auto* value = command.add_option("VALUE", arguments->value, "What it is from now on")->type_name("");
    auto* unset = command.add_flag("--unset", arguments->unset, "Back to the default");
    unset->needs(key)->excludes(value);
    command.add_flag("--path", arguments->path, "Print where the file is, or would be");
    command.add_flag("--json", arguments->json, "As JSON");
    command.callback([arguments, value, &program] {
        program.exitCode = Config(*arguments, value->count() != 0, program.app);
    });
}

}  // namespace host
