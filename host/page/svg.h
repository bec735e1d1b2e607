// The few elements that our pictures are made of.
#pragma once

#include <string>
#include <vector>

#include "host/page/map_projection.h"

namespace host {

// One path of several pieces; empty without two spots in a row. `stroke`: a color, or what the class says.
std::string SvgPath(const std::string& className, const std::vector<std::vector<Spot>>& pieces,
                    const std::string& stroke = "");

// `text`: UTF-8, anything. `anchor`: start, middle or end.
std::string SvgText(const Spot& at, const std::string& text, const std::string& className = "",
                    const std::string& anchor = "");

std::string SvgBox(const PictureFrame& frame, const std::string& fill, double radius);

}  // namespace host
