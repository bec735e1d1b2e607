#include "host/recording/record_options.h"

#include <charconv>
#include <map>

#include <CLI/CLI.hpp>

#include "host/page/page_server.h"
#include "host/recording/left_out.h"
#include "host/source/receivers.h"
#include "host/text/choice.h"

namespace host {
namespace {

const std::map<std::string, EnumRecTrack> kModes = {
    {"time", RecTrackByTime}, {"distance", RecTrackByDist}, {"auto", RecTrackAuto}};

constexpr const char* kFlagAlone = "true";  // what the command line's parser reads from a flag without value

std::optional<double> PositiveNumber(const std::string& text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isGood = error == std::errc() && end == text.data() + text.size() && value > 0 && value <= 1e6;
    return isGood ? std::optional(value) : std::nullopt;
}

std::string CheckSpeed(const std::string& text) {
    return text == "max" || PositiveNumber(text) ? "" : text + " is neither max nor a number above 0";
}

std::string CheckPositive(const std::string& text) {
    return PositiveNumber(text) ? "" : text + " is no number above 0";
}

void AddSources(CLI::App& command, RecordArguments& arguments) {
    CLI::Option_group& source = *command.add_option_group("Source", "Where the fixes come from: one of these");
    source.require_option(1);
    source.add_option("FILE", arguments.file, "NMEA 0183 log or device; - is standard input")
        ->type_name("")
        ->configurable(false);
    source.add_option("--nmea", arguments.file, "The same, as an option")->type_name("FILE");
    source
        .add_option_function<std::string>(
            "--gpsd", [&arguments](const std::string& address) { arguments.gpsd = address; },
            "GPS daemon, at localhost:2947 unless told otherwise")
        ->type_name("[HOST[:PORT]]")
        ->expected(0, 1)
        ->run_callback_for_default();
    source.add_option("--gpx", arguments.gpx, "The first track of a GPX document, replayed")->type_name("FILE");
}

void AddSourceDetails(CLI::App& command, RecordArguments& arguments) {
    command
        .add_option("--baud", arguments.baud, "Speed of the device's line; without it, the line's present one")
        ->check(CLI::IsMember(BaudRates()).description(""))
        ->type_name("RATE");
    command
        .add_option_function<std::string>(
            "--speed", [&arguments](const std::string& speed) { arguments.speed = PositiveNumber(speed); },
            "Replay a file so many times as fast as it was; max is as fast as it goes")
        ->check(CLI::Validator(CheckSpeed, ""))
        ->type_name("N|max")
        ->default_str("max")
        ->excludes("--gpsd")
        ->excludes("--baud");
}

void AddMode(CLI::App& command, RecordSettings& settings) {
    AddChoice(command, "--mode", settings.mode, kModes, "time|distance|auto",
              "What makes a fix a point; auto: whichever comes first");
    command.add_option("--distance", settings.distance, "Metres between points")
        ->check(CLI::Range(1, 1'000'000).description(""))
        ->capture_default_str();
    command.add_option("--time", settings.time, "Seconds between points")
        ->check(CLI::Range(1, 86'400).description(""))
        ->capture_default_str();
    command
        .add_flag("--overwrite,!--no-overwrite", settings.overwrite,
                  "Replace the oldest points at 10000 points, or stop there")
        ->default_str(settings.overwrite ? "true" : "false");
}

void AddGate(CLI::App& command, RecordArguments& arguments) {
    auto* gate = command.add_flag_callback(
        "--gate", [&arguments] { arguments.gate = arguments.gate.value_or(GateSettings{}); },
        "Refuse fixes that cannot be true, and say how many and why");
    const auto add = [&](const std::string& name, double GateSettings::*limit, const std::string& help) {
        const auto take = [&arguments, limit](const std::string& text) {
            if (!arguments.gate) arguments.gate.emplace();
            (*arguments.gate).*limit = *PositiveNumber(text);
        };
        command.add_option_function<std::string>(name, take, help)
            ->check(CLI::Validator(CheckPositive, ""))
            ->needs(gate)
            ->type_name("NUMBER");
    };
    add("--max-hdop", &GateSettings::maxHdop, "The gate's limit of the dilution of precision [10]");
    add("--max-speed", &GateSettings::maxSpeed, "The gate's limit of the speed between fixes in m/s [150]");
}

void AddSaving(CLI::App& command, RecordArguments& arguments) {
    auto* noSave =
        command.add_flag("--no-save", arguments.noSave, "Leave the recording as it is: save no track");
    command.add_option("--save-as", arguments.saveAs, "Name of the track that is saved")
        ->type_name("NAME")
        ->excludes(noSave);
    auto* startNew = command.add_flag(
        "--new", arguments.startNew,
        "Begin a new recording; what is not saved of the one there is saved first, unless --no-save");
    command
        .add_flag("--continue", arguments.goOn, "Go on with the recording that is there, though it is saved")
        ->excludes(startNew);
    command.add_option("--write-after", arguments.writeAfter, "Seconds that a point may wait to be written")
        ->check(CLI::Range(1, 3600).description(""))
        ->capture_default_str();
}

std::string CheckPort(const std::string& text) {
    unsigned port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    const bool isPort = error == std::errc() && end == text.data() + text.size() && port <= 65535;
    return isPort || text == kFlagAlone ? "" : text + " is no port";
}

// The port may stand behind "=" only: behind a blank it would be taken for the file. It is read as text, since
// a number in a flag counts how often the flag is there.
void AddPage(CLI::App& command, RecordArguments& arguments) {
    const std::string help = "Show the recording as a live page on this machine, at port " +
                             std::to_string(kUsualPort) + " or as --serve=PORT says; 0 takes a free one";
    command.add_flag("--serve", arguments.serve, help)->check(CLI::Validator(CheckPort, ""));
}

}  // namespace

void AddRecordOptions(CLI::App& command, RecordArguments& arguments, RecordSettings& settings) {
    AddSources(command, arguments);
    AddSourceDetails(command, arguments);
    AddMode(command, settings);
    AddGate(command, arguments);
    AddSaving(command, arguments);
    AddPage(command, arguments);
    LeaveOutOptions(command);
}

std::optional<int> ServePort(const RecordArguments& arguments) {
    if (arguments.serve.empty()) return std::nullopt;
    return arguments.serve == kFlagAlone ? kUsualPort : std::stoi(arguments.serve);
}

}  // namespace host
