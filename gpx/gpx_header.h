// What a GPX document says besides its points: metadata and the header of a trk.
#pragma once

#include "gpx/gpx.h"
#include "gpx/xml_node.h"

namespace gpx {

// Fills what the gpx element states, for GPX 1.0 and 1.1; every other field stays as it is.
void ReadMetadata(const XmlNode& gpx, GpxMetadata& metadata);

// Fills name, number, colour, visibility, length, area and times; what is not stated stays as it is.
void ReadTrackHeader(const XmlNode& track, GpxTrackInfo& info);

}  // namespace gpx
