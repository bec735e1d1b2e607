#include "host/settings/manual.h"

#include <map>
#include <string>

#include <CLI/App.hpp>

#include "host/settings/command_line.h"
#include "host/settings/manual_text.h"
#include "host/text/roff.h"

namespace host {
namespace {

// Defaults that depend on whose machine it is.
const std::map<std::string, std::string> kDefaultPlaces = {{"--device", "$XDG_DATA_HOME/qtrace"},
                                                           {"--config", "$XDG_CONFIG_HOME/qtrace/config.toml"}};

std::string DefaultOf(const CLI::Option& option) {
    for (const std::string& name : NamesOf(option))
        if (const auto place = kDefaultPlaces.find(name); place != kDefaultPlaces.end()) return place->second;
    return TakesValue(option) ? option.get_default_str() : "";
}

// "Records tracks." becomes "records tracks": as lists of manual pages show it.
std::string Whatis(std::string description) {
    if (description.ends_with('.')) description.pop_back();
    if (!description.empty() && description[0] >= 'A' && description[0] <= 'Z')
        description[0] = static_cast<char>(description[0] - 'A' + 'a');
    return description;
}

std::string WithDots(std::string value, const CLI::Option& option) {
    return TakesSeveral(option) && value.find("...") == std::string::npos ? value + "..." : value;
}

std::string PositionalUsage(const CLI::Option& option) {
    const std::string name = WithDots(Italic(PositionalName(option)), option);
    return option.get_required() ? name : '[' + name + ']';
}

std::string Usage(const CLI::App& app, const std::string& name) {
    std::string usage = Bold(name);
    if (!OptionsOf(app).empty()) usage += " [" + Italic("OPTION") + "]...";
    for (const CLI::Option* positional : PositionalsOf(app)) usage += ' ' + PositionalUsage(*positional);
    return usage;
}

std::string OptionTag(const CLI::Option& option) {
    std::string tag;
    for (const std::string& name : NamesOf(option)) tag += (tag.empty() ? "" : ", ") + Bold(name);
    if (!TakesValue(option)) return tag;
    const std::string name = ValueName(option), value = WithDots(Italic(name), option);
    return tag + (MayBeOmitted(option) && !name.starts_with('[') ? " [" + value + ']' : ' ' + value);
}

void PrintItem(const std::string& tag, const CLI::Option& option, std::ostream& out) {
    const std::string standing = DefaultOf(option);
    out << ".TP\n" << tag << '\n' << Roff(option.get_description());
    if (!standing.empty()) out << " (default: " << Roff(standing) << ')';
    if (!option.get_envname().empty()) out << " (environment: " << Bold(option.get_envname()) << ')';
    out << '\n';
}

void PrintOptions(const CLI::App& app, std::ostream& out) {
    for (const CLI::Option* positional : PositionalsOf(app))
        if (!positional->nonpositional()) PrintItem(Italic(PositionalName(*positional)), *positional, out);
    for (const CLI::Option* option : OptionsOf(app)) PrintItem(OptionTag(*option), *option, out);
}

// A command without a footer has that of the program, which says nothing that is not in EXIT STATUS.
std::string OwnFooter(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    return parent != nullptr && command.get_footer() == parent->get_footer() ? "" : command.get_footer();
}

// With the commands that the command itself has.
void PrintCommand(const CLI::App& command, const std::string& name, std::ostream& out) {
    out << ".SS " << Usage(command, name) << '\n' << RoffParagraphs(command.get_description());
    PrintOptions(command, out);
    if (const std::string footer = RoffParagraphs(OwnFooter(command)); !footer.empty())
        out << ".PP\n" << footer;
    for (const CLI::App* inner : CommandsOf(command)) PrintCommand(*inner, name + ' ' + inner->get_name(), out);
}

}  // namespace

void PrintManual(const CLI::App& app, std::ostream& out) {
    out << ".TH QTRACE 1 \"\" \"" << Roff(app.version()) << "\" \"User Commands\"\n"
        << ".SH NAME\nqtrace \\- " << Roff(Whatis(app.get_description())) << '\n'
        << ".SH SYNOPSIS\n"
        << Bold("qtrace") << " [" << Italic("OPTION") << "]... " << Italic("COMMAND") << " ["
        << Italic("ARGUMENT") << "]...\n"
        << kManualDescription << ".SH COMMANDS\n";
    for (const CLI::App* command : CommandsOf(app))
        PrintCommand(*command, "qtrace " + command->get_name(), out);
    out << ".SH OPTIONS\nThese may stand before a command or behind it.\n"
        << ".TP\n"
        << Bold("-h") << ", " << Bold("--help") << "\nShow the help of the program, or of the command.\n";
    PrintOptions(app, out);
    out << kManualSections;
}

}  // namespace host
