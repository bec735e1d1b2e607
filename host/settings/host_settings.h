// The settings of the host: what the command line and the configuration file say, and how the library is told.
// Written by `qtrace config`. The device folder they lead to: host/settings/device_folder.h.
#pragma once

#include <cstdint>
#include <string>

#include "host/settings/cli_names.h"
#include "host/settings/device_folder.h"
#include "qtrace.h"

namespace host {

struct RecordSettings {
    EnumRecTrack mode = RecTrackAuto;
    int distance = 3;       // [m] at least 1
    int time = 1;           // [s] at least 1: the library divides by it
    bool overwrite = true;  // the oldest points, when the recording is full
};

struct HostSettings {
    std::string device;                      // the device folder; empty: there is no home to put it in
    std::string tracks = "UserData/Track";   // saved tracks and saved recordings, below the device folder
    bool card = false;                       // whether the storage card is there
    std::string cardTracks = "SDMMC/Track";  // saved tracks on it, below the device folder
    EnumStoreTrack storage = StoreTrkAuto;   // where new tracks go
    std::string color = "0000ff";            // of new tracks, red green blue; a "#" may stand before it
    unsigned codePage = 65001;               // of names and paths
    RecordSettings record;
};

// The options that every command takes. They may stand in front of the command or behind it.
void AddSettings(CLI::App& app, HostSettings& settings);

// The library with these settings: where the device lies, its folders, the code page. Before anything else of
// it.
CTrackMan& ApplySettings(const HostSettings& settings);

// What is wrong with a color on the command line; empty for a good one.
std::string CheckColor(const std::string& color);
// "rrggbb" or "#rrggbb" to the library's 0x00BBGGRR; back, with "#".
unsigned ColorValue(const std::string& color);
std::string ColorText(unsigned long value);

}  // namespace host
