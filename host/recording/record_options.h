// What `qtrace record` is asked for on its command line.
#pragma once

#include <optional>
#include <string>

#include "host/settings/cli_names.h"
#include "host/settings/host_settings.h"
#include "host/source/gate.h"

namespace host {

struct RecordArguments {
    std::string file;                 // NMEA 0183: a log, a device, or "-"
    std::optional<int> baud;          // of the device
    std::optional<std::string> gpsd;  // the daemon's address; may be empty
    std::string gpx;                  // a document to replay
    std::optional<double> speed;      // of a replay; none: as fast as it goes

    std::optional<GateSettings> gate;
    int writeAfter = 10;  // [s] that a point of a live source may wait to be written

    bool noSave = false;
    bool startNew = false, goOn = false;
    std::string saveAs;  // UTF-8; empty: the time

    std::string serve;  // as given; see ServePort
};

// `arguments` are filled when the command line is parsed; what is missing or excludes each other ends the
// parsing. `settings`: the settings of the recording, as the configuration file and then the options say.
void AddRecordOptions(CLI::App& command, RecordArguments& arguments, RecordSettings& settings);

// Of the live page; 0: any free one. None: no page is asked for.
std::optional<int> ServePort(const RecordArguments& arguments);

}  // namespace host
