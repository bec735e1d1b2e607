// What the user is told of a command line that is wrong.
#pragma once

#include <string>

#include "host/settings/cli_names.h"

namespace host {

// "qtrace COMMAND: what is wrong", and where help is. Whatever it quotes, it does not steer the terminal. To be
// set as the failure message of the program.
std::string UsageMessage(const CLI::App* app, const CLI::Error& problem);

// "no such command NAME", and the one of nearly that name that `app` has, if there is one.
std::string NoSuchCommand(const CLI::App& app, const std::string& name);

}  // namespace host
