// What needs a client of the GPS daemon, the settings of a serial line or a server of pages: none of them is
// there for this system. `serve` is left out as a whole.
#include "host/recording/left_out.h"

#include <string>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/source/receivers.h"

namespace host {
namespace {

constexpr const char* kIsLeftOut = " is not part of qtrace for Windows";

std::string CheckNoSerialLine(const std::string& file) {
    return IsSerialDevice(file) ? "reading a serial line such as " + file + kIsLeftOut : "";
}

// The name stays known, so that the message can be of use.
void LeaveOut(CLI::App& options, const std::string& name) {
    options.remove_option(options.get_option(name));
    const auto refuse = [name](const CLI::results_t&) -> bool {
        throw CLI::ValidationError(name + kIsLeftOut);
    };
    options.add_option(name, refuse)->expected(0, 1)->configurable(false)->group("");
}

constexpr const char* kRecordFooter =
    "At the end, on Ctrl-C and when the window is closed the whole recording is saved as a track, and the next "
    "run\n"
    "begins another. A recording that is not saved, after a power cut or a failed save, is continued, unless "
    "--new:\n"
    "then it is saved first, as a track of its own. Input without a usable fix is saved as nothing, and the "
    "exit\n"
    "code is 1.\n"
    "Points go to storage 60 at a time (30 by distance, a minute's worth by time); those of standard input "
    "wait "
    "10 s\n"
    "at most, or what --write-after says: a power cut costs no more.";

}  // namespace

void LeaveOutOptions(CLI::App& record) {
    CLI::App& source = *record.get_option_group("Source");
    for (const char* name : {"--gpsd", "--baud"})  // which the help of the other would name
        record.get_option("--speed")->remove_excludes(record.get_option(name));
    LeaveOut(source, "--gpsd");
    for (const char* name : {"--baud", "--serve"}) LeaveOut(record, name);
    for (const char* name : {"FILE", "--nmea"})
        source.get_option(name)->check(CLI::Validator(CheckNoSerialLine, ""));
    source.get_option("FILE")->description("NMEA 0183 log; - is standard input");
    record.description("Record the fixes of a file");
    record.footer(kRecordFooter);
}

void AddServeCommand(Program& program) {
    CLI::App& command = AddCommand(program, "serve", "Not part of qtrace for Windows");
    command.fallthrough(false)->prefix_command()->group("");
    command.callback([] { throw CLI::ValidationError(std::string("serve") + kIsLeftOut); });
}

}  // namespace host
