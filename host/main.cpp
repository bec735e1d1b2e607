// The program `qtrace`: one command a file. Exit codes: 0 done, 1 failed, 2 wrong usage.
#include <algorithm>
#include <exception>
#include <iostream>
#include <utility>

#include <CLI/CLI.hpp>

#include "host/program.h"
#include "host/settings/configuration.h"
#include "host/settings/environment.h"
#include "host/settings/usage_message.h"
#include "host/text/display_width.h"
#include "host/text/terminal.h"

namespace {

void Describe(CLI::App& app) {
    app.name("qtrace");
    app.description("Records GPS tracks so that nothing is lost, and keeps them.");
    app.set_version_flag("--version", "qtrace " QTRACE_VERSION);
    host::AddConfiguration(app);
    app.require_subcommand(1);
    app.fallthrough();
    app.failure_message(host::UsageMessage);
    app.footer("Exit codes: 0 done, 1 failed, 2 wrong usage. 'qtrace COMMAND --help' tells more.");
}

int Run(std::vector<std::string> arguments) {
    CLI::App app;
    Describe(app);
    host::Program program{app};
    host::AddSettings(app, program.settings);
    host::AddRecordCommand(program);
    host::AddSaveCommand(program);
    host::AddListCommand(program);
    host::AddInfoCommand(program);
    host::AddPointsCommand(program);
    host::AddRenameCommand(program);
    host::AddColorCommand(program);
    host::AddShowCommand(program);
    host::AddHideCommand(program);
    host::AddReverseCommand(program);
    host::AddDeleteCommand(program);
    host::AddMergeCommand(program);
    host::AddSplitCommand(program);
    host::AddImportCommand(program);
    host::AddExportCommand(program);
    host::AddCheckCommand(program);
    host::AddMapCommand(program);
    host::AddServeCommand(program);
    host::AddRingCommand(program);
    host::AddSalvageCommand(program);
    host::AddSimulateCommand(program);
    host::AddConfigCommand(program);
    host::AddHelpCommand(program);
    host::AddDescriptions(program);
    std::reverse(arguments.begin(), arguments.end());  // they are taken from the back
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& question) {  // also asked for help or version: then the code is 0
        return app.exit(question) == 0 ? host::kDone : host::kWrongUsage;
    }
    return program.exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    host::PrepareStandardStreams();
    try {
        const int exitCode = Run(host::Arguments(argc, argv));
        if (std::cout.flush()) return exitCode;
        std::cerr << "qtrace: standard output could not be written\n";
        return host::kFailed;
    } catch (const std::exception& problem) {
        std::cerr << "qtrace: " << host::Printable(problem.what()) << '\n';
        return host::kFailed;
    }
}
