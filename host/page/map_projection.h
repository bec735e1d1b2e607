// Places on the earth to places in a picture, north up: Mercator's projection, as map pages use it.
#pragma once

#include <vector>

#include "host/tracks/library.h"

namespace host {

// A place in a picture [px], x to the right and y downwards.
struct Spot {
    double x = 0, y = 0;
};

struct PictureFrame {  // [px]
    double left = 0, top = 0, width = 0, height = 0;
};

// Positions of one track with longitudes that run on across the 180th meridian [deg].
struct GroundLine {
    std::vector<double> latitudes, longitudes;
};

// `nearTo`: moved by whole turns so that its first point lies within half a turn of that longitude.
GroundLine LineOf(const Points& points, double nearTo);

class MapProjection {
 public:
    // Shows all lines within the frame, as large as they fit, and no less than some 50 m of ground. At least
    // one line has a point.
    MapProjection(const std::vector<GroundLine>& lines, const PictureFrame& frame);

    Spot At(double latitude, double longitude) const;
    double LatitudeAt(double y) const;   // [deg]
    double LongitudeAt(double x) const;  // [deg] perhaps beyond 180
    double MetresPerPixel() const;       // in the middle of the frame
    double DegreesPerPixel() const;      // of longitude

 private:
    double m_perDegree = 1;          // [px] of longitude
    double m_west = 0, m_north = 0;  // of the picture's origin [deg], [deg in the projection]
    double m_middleLatitude = 0;
};

}  // namespace host
