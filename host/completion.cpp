#include "host/completion.h"

#include <algorithm>
#include <map>
#include <string>

#include "host/command_line.h"

namespace host {
namespace {

using Table = std::map<std::string, std::string>;

struct Tables {
    Table commands, options, values;
};

std::string Joined(const std::string& list, const std::string& word) {
    return list.empty() ? word : list + ' ' + word;
}

// By what the help calls the value.
std::string KindOf(std::string value) {
    static const Table kKinds = {
        {"FILE", "@file"}, {"PATH", "@file"}, {"DIR", "@dir"}, {"TRACK", "@track"}, {"COMMAND", "@command"}};
    if (const auto kind = kKinds.find(value); kind != kKinds.end()) return kind->second;
    if (value.find('|') == std::string::npos) return "@text";
    std::replace(value.begin(), value.end(), '|', ' ');
    return value;
}

// An argument's own name counts when its value has none; a NAME there is that of a track.
std::string ArgumentKind(const CLI::Option& argument) {
    const std::string kind = KindOf(ValueName(argument));
    if (kind != "@text") return kind;
    const std::string name = PositionalName(argument);
    return name == "NAME" ? "@track" : KindOf(name);
}

void AddCommand(const CLI::App& app, const std::string& name, Tables& tables) {
    std::string options = "--help";
    for (const CLI::Option* option : OptionsOf(app)) {
        for (const std::string& word : NamesOf(*option)) {
            options = Joined(options, word);
            if (TakesValue(*option)) tables.values[name + ' ' + word] = KindOf(ValueName(*option));
        }
    }
    tables.options[name] = options;
    int place = 1;
    for (const CLI::Option* argument : PositionalsOf(app))
        tables.values[name + ' ' + (TakesSeveral(*argument) ? "..." : std::to_string(place++))] =
            ArgumentKind(*argument);
    for (const CLI::App* command : CommandsOf(app)) {
        tables.commands[name] = Joined(tables.commands[name], command->get_name());
        AddCommand(*command, name + ' ' + command->get_name(), tables);
    }
}

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char sign : text) quoted += sign == '\'' ? "'\\''" : std::string(1, sign);
    return quoted + '\'';
}

void PrintTable(const std::string& name, const Table& table, std::ostream& out) {
    out << "declare -gA " << name << "=(\n";
    for (const auto& [key, text] : table) out << "    [" << Quoted(key) << "]=" << Quoted(text) << '\n';
    out << ")\n";
}

}  // namespace

void PrintCompletion(const CLI::App& app, std::ostream& out) {
    Tables tables;
    AddCommand(app, "qtrace", tables);
    PrintTable("_qtrace_commands", tables.commands, out);
    PrintTable("_qtrace_options", tables.options, out);
    PrintTable("_qtrace_values", tables.values, out);
}

}  // namespace host
