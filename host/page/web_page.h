// The page that shows tracks: one HTML document with everything in it. Its sources: host/web/. As a picture:
// host/page/map_svg.h. What stands in it of a track: host/page/drawn_track.h.
#pragma once

#include <optional>
#include <string>

#include "host/text/json.h"

namespace host {

// A map in the background from somebody's server.
struct Tiles {
    std::string url;          // with {z}, {x} and {y}, perhaps {s} and {r}
    std::string attribution;  // whose map it is; shown as text
};

// Empty when the page can take it; otherwise what is wrong. For the command line.
std::string CheckTilesUrl(const std::string& url);

struct PageOptions {
    std::string title;  // UTF-8
    bool live = false;  // the page asks the program that serves it for the tracks
    std::optional<Tiles> tiles;
};

// `tracks`: an array of DrawnTrackJson. Whatever the names in it hold, they are text to the page.
std::string WebPage(const PageOptions& options, const Json& tracks);

// The Content-Security-Policy of that page: nothing runs but its own script, nothing is asked for but the tiles
// and, live, the program itself.
std::string PagePolicy(const PageOptions& options);

}  // namespace host
