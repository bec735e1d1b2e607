// The program `qtrace`: one command a file. Exit codes: 0 done, 1 failed, 2 wrong usage.
#include <fcntl.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <tuple>

#include "host/record_command.h"

namespace {

constexpr int kFailed = 1, kWrongUsage = 2;

// A standard stream that came closed would let the next file that is opened take its place, and what is said
// would be written into that file.
void OpenStandardStreams() {
    for (int stream = 0; stream <= 2; ++stream)
        if (::fcntl(stream, F_GETFD) < 0) std::ignore = ::open("/dev/null", O_RDWR);
}

int Run(int argc, char** argv) {
    int exitCode = 0;
    CLI::App program("Records GPS tracks so that nothing is lost, and keeps them.", "qtrace");
    program.set_version_flag("--version", "qtrace " QTRACE_VERSION);
    program.require_subcommand(1);
    program.footer("Exit codes: 0 done, 1 failed, 2 wrong usage. 'qtrace COMMAND --help' tells more.");
    host::AddRecordCommand(program, exitCode);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& question) {  // also asked for help or version: then the code is 0
        return program.exit(question) == 0 ? 0 : kWrongUsage;
    }
    return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    OpenStandardStreams();
    std::signal(SIGXFSZ, SIG_IGN);  // a limit on file sizes is then an error like a full disk
    try {
        const int exitCode = Run(argc, argv);
        if (std::cout.flush()) return exitCode;
        std::cerr << "qtrace: standard output could not be written\n";
        return kFailed;
    } catch (const std::exception& problem) {
        std::cerr << "qtrace: " << problem.what() << '\n';
        return kFailed;
    }
}
