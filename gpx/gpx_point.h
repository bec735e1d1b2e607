// One trkpt of a GPX document.
#pragma once

#include "gpx/xml_node.h"
#include "track/point.h"

namespace gpx {

// Reads position, altitude and time. What the element does not state stays as it is in `point`. False, with
// `point` untouched, for an element without latitude or longitude.
bool ReadPoint(const XmlNode& element, TckPt& point);

}  // namespace gpx
