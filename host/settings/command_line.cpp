#include "host/settings/command_line.h"

#include <algorithm>

#include <CLI/App.hpp>

namespace host {

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
    return app.get_subcommands(
        [](const CLI::App* command) { return !command->get_name().empty() && !command->get_group().empty(); });
}

const CLI::App* FindCommand(const CLI::App& app, const std::string& name) {
    const auto commands = CommandsOf(app);
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&name](const CLI::App* command) { return command->get_name() == name; });
    return found == commands.end() ? nullptr : *found;
}

namespace {

// Options of a group of the parser's own lie in a nameless part of the command.
template <typename Filter>
std::vector<const CLI::Option*> Gather(const CLI::App& app, Filter filter) {
    auto options = app.get_options(filter);
    for (const CLI::App* part :
         app.get_subcommands([](const CLI::App* command) { return command->get_name().empty(); })) {
        const auto more = Gather(*part, filter);
        options.insert(options.end(), more.begin(), more.end());
    }
    return options;
}

}  // namespace

std::vector<const CLI::Option*> OptionsOf(const CLI::App& app) {
    return Gather(app, [](const CLI::Option* option) {
        return !option->get_group().empty() && option->nonpositional() && !option->check_lname("help");
    });
}

std::vector<const CLI::Option*> PositionalsOf(const CLI::App& app) {
    return Gather(app, [](const CLI::Option* option) {
        return !option->get_group().empty() && option->get_positional();
    });
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) names.push_back('-' + name);
    for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
    return names;
}

std::string PositionalName(const CLI::Option& option) { return option.get_name(true, false); }

bool TakesValue(const CLI::Option& option) { return option.get_items_expected_max() != 0; }

bool MayBeOmitted(const CLI::Option& option) { return option.get_items_expected_min() == 0; }

bool TakesSeveral(const CLI::Option& option) { return option.get_expected_max() > 1; }

std::string ValueName(const CLI::Option& option) {
    return option.get_option_text().empty() ? option.get_type_name() : option.get_option_text();
}

}  // namespace host
