// The tracks that the user names on the command line, and what is known of them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/tracks/library.h"

namespace host {

// `name` as the user wrote it (UTF-8): the display name, in exactly these letters before any other case, or the
// file name with or without ".gpx". Null if there is none.
CTrackProxy* TrackNamed(const Library& library, const std::string& name);

// All of them, each once, in the order of the names. Otherwise tells on standard error which are not there, on
// behalf of `command`, and gives nothing.
std::optional<std::vector<CTrackProxy*>> TracksNamed(const Library& library, const std::string& command,
                                                     const std::vector<std::string>& names);

// "no track named X", on behalf of `command`; returns kFailed.
int FailForName(const std::string& command, const std::string& name);

// The name as the terminal takes it. `name`: in the code page.
std::string ShownName(const std::string& name);
std::string ShownName(CTrackProxy& track);

// Files of the library's folders that look like tracks and are not listed, since they cannot be read.
struct UnreadableFile {
    std::filesystem::path file;
    std::string reason;
};
std::vector<UnreadableFile> UnreadableFiles(const Library& library, const HostSettings& settings);

}  // namespace host
