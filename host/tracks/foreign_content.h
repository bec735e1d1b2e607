// What a GPX file holds beside the one track that the library keeps of it. A change to the track's header
// rewrites the file with that track alone, so the user is asked first.
#pragma once

#include <filesystem>
#include <string>

#include "host/tracks/library.h"

namespace host {

// "3 waypoints, 1 more track, extensions"; empty for a file that holds nothing but its track, as the library
// writes it. What cannot be looked at for its encoding or form counts as foreign.
std::string ForeignContent(const std::filesystem::path& file);

// When the file of the track holds more and the user does not force it: tells so on standard error, on behalf
// of `command`, and is true.
bool IsKeptForForeignContent(const Library& library, CTrackProxy& track, const std::string& command,
                             bool force);

// For the help of --force.
inline const char* const kForceHelp = "Also where a file holds more than its track, which is then lost";

}  // namespace host
