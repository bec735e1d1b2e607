// Tracks as a picture: an SVG without any script, with graticule, scale bar, north and a profile. The page with
// the same content: host/page/web_page.h.
#pragma once

#include <string>
#include <vector>

#include "host/page/drawn_track.h"

namespace host {

// At least one track. The profile is that of a single track. `title`: UTF-8.
std::string MapSvg(const std::string& title, const std::vector<DrawnTrack>& tracks);

}  // namespace host
