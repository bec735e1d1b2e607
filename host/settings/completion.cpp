#include "host/settings/completion.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "host/settings/command_line.h"

namespace host {
namespace {

using Table = std::map<std::string, std::string>;

struct Tables {
    Table commands, options, values;
};

std::string Joined(const std::string& list, const std::string& word) {
    return list.empty() ? word : list + ' ' + word;
}

std::vector<std::string> WordsOf(std::string text) {
    for (char& sign : text)
        if (sign == '|' || sign == '[' || sign == ']') sign = ' ';
    std::istringstream words(text);
    std::vector<std::string> list;
    for (std::string word; words >> word;) list.push_back(word.substr(0, word.find("...")));
    return list;
}

// What the help calls a value stands for things to look up; otherwise words in capitals stand for what nobody
// can guess, and the others are there to choose from.
std::string KindOf(const std::string& value, const Table& kinds) {
    const bool isChoice = value.find('|') != std::string::npos;
    std::string all;
    for (const std::string& word : WordsOf(value)) {
        const auto kind = kinds.find(word);
        const bool isPlain =
            std::none_of(word.begin(), word.end(), [](char sign) { return sign >= 'A' && sign <= 'Z'; });
        if (kind != kinds.end())
            all = Joined(all, kind->second);
        else if (isChoice && isPlain)
            all = Joined(all, word);
    }
    return all.empty() ? "@text" : all;
}

const Table kOptionKinds = {
    {"FILE", "@file"}, {"PATH", "@file"}, {"DIR", "@dir"}, {"TRACK", "@track"}, {"COMMAND", "@command"}};

// An argument's own name counts when its value has none; a NAME there is that of a track.
std::string ArgumentKind(const CLI::Option& argument) {
    Table kinds = kOptionKinds;
    kinds["NAME"] = "@track";
    const std::string kind = KindOf(ValueName(argument), kinds);
    return kind == "@text" ? KindOf(PositionalName(argument), kinds) : kind;
}

void AddCommand(const CLI::App& app, const std::string& name, Tables& tables) {
    std::string options = "--help";
    for (const CLI::Option* option : OptionsOf(app)) {
        for (const std::string& word : NamesOf(*option)) {
            options = Joined(options, word);
            if (TakesValue(*option))
                tables.values[name + ' ' + word] = KindOf(ValueName(*option), kOptionKinds);
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
