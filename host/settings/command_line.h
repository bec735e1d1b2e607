// What the manual page and the completion read off the command line, so that they never disagree with --help.
// The manual page: host/settings/manual.h. The completion: host/settings/completion.h.
#pragma once

#include <string>
#include <vector>

#include "host/settings/cli_names.h"

namespace host {

// Commands in the order of the help; hidden ones are left out.
std::vector<const CLI::App*> CommandsOf(const CLI::App& app);
const CLI::App* FindCommand(const CLI::App& app, const std::string& name);  // null if there is none

// Without those that are hidden, and without --help, which every command has. Options that have a positional
// name, too, are in both lists.
std::vector<const CLI::Option*> OptionsOf(const CLI::App& app);
std::vector<const CLI::Option*> PositionalsOf(const CLI::App& app);

// "-o", "--output"; the names that switch a flag off are among them.
std::vector<std::string> NamesOf(const CLI::Option& option);
std::string PositionalName(const CLI::Option& option);

bool TakesValue(const CLI::Option& option);
bool MayBeOmitted(const CLI::Option& option);  // the value, not the option
bool TakesSeveral(const CLI::Option& option);

// The value as the help shows it: "FILE", "time|distance|auto"; with "..." behind it or brackets around it
// where the command says so itself.
std::string ValueName(const CLI::Option& option);

}  // namespace host
