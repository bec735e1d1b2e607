#include "host/program.h"

#include <iostream>

#include <CLI/CLI.hpp>

#include "host/text/display_width.h"

namespace host {

CLI::App& AddCommand(Program& program, const std::string& name, const std::string& help) {
    return *program.app.add_subcommand(name, help);
}

int Fail(const std::string& command, const std::string& message) {
    std::cout.flush();
    std::cerr << "qtrace " << command << ": " << Printable(message) << '\n';
    return kFailed;
}

}  // namespace host
