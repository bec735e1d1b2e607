// What the commands of the program share: its settings, its exit code and how it says what went wrong.
// One command a file; each adds itself to the command line with the function below.
#pragma once

#include <string>

#include "host/settings/cli_names.h"
#include "host/settings/host_settings.h"

namespace host {

constexpr int kDone = 0, kFailed = 1, kWrongUsage = 2;

struct Program {
    CLI::App& app;
    HostSettings settings = {};
    int exitCode = kDone;
};

// A command of that name; its help begins with `help`. Commands are made here alone: whoever makes one needs
// all headers of the argument library, which takes seconds to read.
CLI::App& AddCommand(Program& program, const std::string& name, const std::string& help);

// "qtrace COMMAND: MESSAGE" on standard error, behind what was printed so far. Whatever the message quotes, it
// does not steer the terminal. Returns kFailed.
int Fail(const std::string& command, const std::string& message);

// Each adds one command. Parsing the command line runs it, and leaves the exit code in the program.
void AddRecordCommand(Program& program);
void AddSaveCommand(Program& program);
void AddListCommand(Program& program);
void AddInfoCommand(Program& program);
void AddPointsCommand(Program& program);
void AddRenameCommand(Program& program);
void AddColorCommand(Program& program);
void AddShowCommand(Program& program);
void AddHideCommand(Program& program);
void AddReverseCommand(Program& program);
void AddDeleteCommand(Program& program);
void AddMergeCommand(Program& program);
void AddSplitCommand(Program& program);
void AddImportCommand(Program& program);
void AddExportCommand(Program& program);
void AddCheckCommand(Program& program);
void AddMapCommand(Program& program);
void AddServeCommand(Program& program);
void AddRingCommand(Program& program);
void AddSalvageCommand(Program& program);
void AddSimulateCommand(Program& program);
void AddConfigCommand(Program& program);
void AddHelpCommand(Program& program);

// Commands that no help shows: the manual page and the completion are made with them.
void AddDescriptions(Program& program);

}  // namespace host
