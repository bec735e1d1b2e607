// The profile in a picture: elevation and speed along the distance.
#pragma once

#include <string>

#include "host/page/drawn_track.h"
#include "host/page/map_projection.h"

namespace host {

// Whether there is a way, and an elevation or a speed along it.
bool HasProfile(const DrawnPoints& drawn);

// Elevation against the left axis, speed against the right one.
std::string ProfileSvg(const DrawnPoints& drawn, const PictureFrame& frame);

}  // namespace host
