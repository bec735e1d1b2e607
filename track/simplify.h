// CDilutionPt: thins a list of points by distance. Inner to the library; tracks use it through
// CTrack::SimplifyPt.
#pragma once

#include <vector>

#include "track/point.h"
#include "util/je_allocator.h"

// Removes the points that lie within the tolerance of the line through the points kept: no removed point is
// farther from its piece of the kept line than the tolerance. The first and last point stay, and so does the
// order. Distances are measured to the piece, not to the endless line, in a local plane in which longitude is
// scaled by the cosine of the latitude; so a closed ring, or a way out and back, keeps its far points.
// The time grows with n log n, also for a line made to prevent it.
// Source: Douglas and Peucker 1973, with a stack of its own instead of recursion.
class CDilutionPt {
 public:
    void SetSimplifyDis(
        double degrees);  // tolerance in degrees of arc; 0 or less, or NaN: no thinning by distance
    void SetOnceSimpPt(unsigned int points);  // kept for callers of the interface; no result depends on it
    void SetEpurate(bool epurate);            // also remove points that repeat the previous point's position

    void SimplifyPt(std::vector<TckPt, je_allocator<TckPt>>& pts) const;
    // level: each step doubles the tolerance, 0 and below take it as set. wide and last have no effect: the
    // caller has set a wider tolerance already.
    void SimplifyPt(std::vector<TckPt, je_allocator<TckPt>>& pts, int level, bool wide, bool last) const;

 private:
    double m_dSimplifyDis = 0.0;
    unsigned int m_uOnceSimpPt = 0;
    bool m_bEpurate = false;
};
