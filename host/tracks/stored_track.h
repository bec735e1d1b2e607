// One stored track changed on disk and looked at afterwards: the library reports success for some writes that
// failed. Storing a new one: Library::Store (host/tracks/library.h).
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/tracks/library.h"

namespace host {

// A track as its file has it. A handle of the list may differ: a scan hides the eleventh shown track and those
// behind it, and numbers names that occur twice; none of that belongs on disk.
struct StoredTrack {
    std::string name;  // in the code page
    unsigned long color = 0;
    bool visible = false;
    Points points;
};

// Nothing when the file cannot be read. `path`: the device path of a handle.
std::optional<StoredTrack> ReadStoredTrack(const std::string& path);

// Both hold the same line: positions as far as a file states them, and times.
bool SamePoints(const Points& a, const Points& b);

// Changes name, color or visibility of a track in its file; everything else of it stays. Otherwise says why
// not: then the file is as it was, or the message says where a copy is.
std::optional<std::string> ChangeHeader(const Library& library, CTrackProxy& track,
                                        const std::function<void(CTrackProxy&)>& change);

// Why a file of `bytes` bytes cannot be written in that folder just now, in the system's words; empty when it
// can.
std::string WhyNotWritable(const std::filesystem::path& folder, std::size_t bytes);

}  // namespace host
