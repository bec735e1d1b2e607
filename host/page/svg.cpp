#include "host/page/svg.h"

#include "host/text/markup.h"
#include "host/text/text.h"

namespace host {
namespace {

std::string Attribute(const std::string& name, const std::string& value) {
    return value.empty() ? "" : ' ' + name + "=\"" + MarkupText(value) + '"';
}

std::string Number(double value) { return Decimals(value, 1); }

}  // namespace

std::string SvgPath(const std::string& className, const std::vector<std::vector<Spot>>& pieces,
                    const std::string& stroke) {
    std::string path;
    for (const std::vector<Spot>& piece : pieces) {
        if (piece.empty()) continue;
        for (std::size_t i = 0; i < piece.size(); ++i)
            path += (i == 0 ? 'M' : 'L') + Number(piece[i].x) + ' ' + Number(piece[i].y);
        // A single spot is a line of no length, which round ends make a dot.
        if (piece.size() == 1) path += 'L' + Number(piece[0].x) + ' ' + Number(piece[0].y);
    }
    return "<path" + Attribute("class", className) + Attribute("stroke", stroke) + Attribute("d", path) +
           "/>\n";
}

std::string SvgText(const Spot& at, const std::string& text, const std::string& className,
                    const std::string& anchor) {
    return "<text" + Attribute("class", className) + Attribute("text-anchor", anchor) +
           Attribute("x", Number(at.x)) + Attribute("y", Number(at.y)) + '>' + MarkupText(text) + "</text>\n";
}

std::string SvgBox(const PictureFrame& frame, const std::string& fill, double radius) {
    return "<rect" + Attribute("x", Number(frame.left)) + Attribute("y", Number(frame.top)) +
           Attribute("width", Number(frame.width)) + Attribute("height", Number(frame.height)) +
           Attribute("rx", Number(radius)) + Attribute("fill", fill) + "/>\n";
}

}  // namespace host
