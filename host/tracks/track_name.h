// Names that the library can give to a track: at most 32 bytes, and fit for a file.
#pragma once

#include <cstddef>
#include <string>

namespace host {

constexpr std::size_t kLongestName = 32;  // bytes, in the code page of the settings

struct TrackName {
    std::string text;         // in the code page; empty when nothing of the name is left
    bool wasChanged = false;  // cut, or characters replaced: the user is told
};

// From the user's text (UTF-8). Cut at a character's end; control characters (host/text/display_width.h) and
// those that no file name may hold become underscores, so no name leads out of the library's folder; blanks
// around it go.
TrackName MakeTrackName(const std::string& text);

// The beginning of a name (code page) that fits in so many bytes, cut at a character's end.
std::string CutName(const std::string& name, std::size_t bytes);

}  // namespace host
