// `qtrace help`, and what the manual page and the completion are made with; those commands are not shown.
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/settings/command_line.h"
#include "host/settings/completion.h"
#include "host/settings/manual.h"
#include "host/settings/usage_message.h"
#include "host/text/text.h"
#include "host/tracks/library.h"

namespace host {
namespace {

// Not by the command's own way, which hands over to the command that runs.
std::string HelpOf(const CLI::App& app, const std::vector<std::string>& names) {
    const CLI::App* asked = &app;
    std::string called = app.get_name();
    for (const std::string& name : names) {
        const CLI::App* inner = FindCommand(*asked, name);
        if (inner == nullptr) throw CLI::ValidationError(NoSuchCommand(*asked, name));
        asked = inner;
        called += ' ' + name;
    }
    return asked->get_formatter()->make_help(asked, called, CLI::AppFormatMode::Normal);
}

// For the completion. It must not make a folder, as a listing may.
void PrintTrackNames(const HostSettings& settings) {
    if (!std::filesystem::exists(DeviceFolder(settings).Tracks())) return;
    const Library library(settings);
    for (CTrackProxy* track : library.Tracks()) std::cout << ToUtf8(track->GetName()) << '\n';
}

void AddHidden(Program& program, const char* name, const std::function<void()>& print) {
    AddCommand(program, name, "").group("")->callback(print);
}

}  // namespace

void AddHelpCommand(Program& program) {
    auto names = std::make_shared<std::vector<std::string>>();
    CLI::App& command = AddCommand(program, "help", "Show the help of a command");
    command.add_option("COMMAND", *names, "Without one: what commands there are")
        ->type_name("")
        ->configurable(false);
    command.callback([names, &program] { std::cout << HelpOf(program.app, *names); });
}

void AddDescriptions(Program& program) {
    AddHidden(program, "print-manual", [&program] { PrintManual(program.app, std::cout); });
    AddHidden(program, "print-completion", [&program] { PrintCompletion(program.app, std::cout); });
    AddHidden(program, "print-track-names", [&program] { PrintTrackNames(program.settings); });
}

}  // namespace host
