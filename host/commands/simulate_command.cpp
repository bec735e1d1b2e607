// `qtrace simulate`: a trip that never was, as NMEA 0183.
#include <algorithm>
#include <limits>
#include <map>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/simulation/simulated_road.h"
#include "host/text/choice.h"
#include "host/text/duration.h"
#include "host/text/iso_time.h"
#include "host/text/output_file.h"

namespace host {
namespace {

constexpr std::int64_t kLongest = 30 * 86'400;  // [s]
constexpr std::int64_t kGpsBegins = 315'964'800;

struct Arguments {
    std::uint64_t seed = 1;
    std::string duration = "1h";
    std::string start = "2024-05-12T08:00:00Z";
    int rate = 1;
    Profile profile = Profile::Car;
    std::string output = "-";
    bool force = false;
};

const std::map<std::string, Profile> kProfiles = {
    {"car", Profile::Car}, {"walk", Profile::Walk}, {"boat", Profile::Boat}};

std::string CheckDuration(const std::string& text) {
    const auto seconds = ReadDuration(text);
    return seconds && *seconds > 0 && *seconds <= kLongest ? ""
                                                           : text + " is no duration like 90s, 15m or 1h30m";
}

// NMEA years have two digits, and recorded times 32 bits.
std::string CheckStart(const std::string& text) {
    const auto time = ReadIsoTime(text);
    const bool good =
        time && *time >= kGpsBegins && *time <= std::numeric_limits<std::int32_t>::max() - kLongest;
    return good ? "" : text + " is no time like 2024-05-12T08:00:00Z, from 1980 to 2037";
}

// The receiver finds its first fix after some seconds, and again after some behind a tunnel.
class Trip {
 public:
    explicit Trip(const Arguments& arguments)
        : m_road(arguments.profile, arguments.seed),
          m_receiver(~arguments.seed, arguments.rate, true),
          m_driving(DrivingOf(arguments.profile)),
          m_rate(arguments.rate) {
        m_vehicle.waiting = 12;
        if (arguments.profile == Profile::Boat) m_vehicle.height = 0;
        m_lost = 6 * m_rate;
    }

    // The sentences of the next time [tenths of a second since 1970].
    std::string Next(std::int64_t time) {
        m_road.Prepare(m_vehicle);
        std::string text = m_lost > 0 ? m_receiver.NoFix(time) : m_receiver.Fix(time, m_vehicle);
        for (int step = 0; step < 10 / m_rate; ++step) Advance(m_road.Pieces(), m_driving, m_vehicle);
        m_lost = m_road.Pieces()[m_vehicle.piece].tunnel ? 3 * m_rate : std::max(m_lost - 1, 0);
        return text;
    }

 private:
    EndlessRoad m_road;
    Receiver m_receiver;
    Driving m_driving;
    Vehicle m_vehicle;
    int m_rate;
    int m_lost;  // times without a fix still to come
};

int Simulate(const Arguments& arguments) {
    OutputFile output(arguments.output, arguments.force);
    Trip trip(arguments);
    const std::int64_t start = 10 * *ReadIsoTime(arguments.start), step = 10 / arguments.rate;
    const std::int64_t end = start + 10 * *ReadDuration(arguments.duration);
    for (std::int64_t time = start; time < end && !output.Problem(); time += step)
        output.Write(trip.Next(time));
    const auto problem = output.Finish();
    return problem ? Fail("simulate", *problem) : kDone;
}

void AddOptions(CLI::App& command, Arguments& arguments) {
    command.add_option("--seed", arguments.seed, "The same number gives the same trip")->capture_default_str();
    command.add_option("--duration", arguments.duration, "How long it takes: 90s, 15m, 1h30m")
        ->type_name("TIME")
        ->check(CLI::Validator(CheckDuration, ""))
        ->capture_default_str();
    command.add_option("--start", arguments.start, "When it begins")
        ->type_name("TIME")
        ->check(CLI::Validator(CheckStart, ""))
        ->capture_default_str();
    command.add_option("--rate", arguments.rate, "Fixes a second")
        ->type_name("1|2|5|10")
        ->check(CLI::IsMember({1, 2, 5, 10}).description(""))
        ->capture_default_str();
    AddChoice(command, "--profile", arguments.profile, kProfiles, "car|walk|boat", "What moves");
    command.add_option("-o,--output", arguments.output, "The file; - is standard output")
        ->type_name("FILE")
        ->capture_default_str();
    command.add_flag("--force", arguments.force, "Replace the file if it is there");
}

}  // namespace

void AddSimulateCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "simulate", "Write a trip that never was, as NMEA 0183");
    AddOptions(command, *arguments);
    command.footer("Try it: qtrace simulate | qtrace record -");
    command.callback([arguments, &program] { program.exitCode = Simulate(*arguments); });
}

}  // namespace host
