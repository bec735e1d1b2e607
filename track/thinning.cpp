// Thinning a track's points by distance. How it is done: track/simplify.h.
#include "track/simplify.h"
#include "track/track.h"

namespace {

constexpr unsigned int kPointsAtOnce = 60;

}  // namespace

void CTrack::SimplifyPt() {
    if (m_vecPtLst.empty()) return;
    CDilutionPt dilution;
    dilution.SetSimplifyDis(m_dSimplifyDis);
    dilution.SetOnceSimpPt(kPointsAtOnce);
    dilution.SetEpurate(m_bEpurate);
    dilution.SimplifyPt(m_vecPtLst);
    m_bCalculated = false;
}

void CTrack::SimplifyPt(std::vector<TckPt, je_allocator<TckPt>>& out, int level, bool wide) const {
    CDilutionPt dilution;
    dilution.SetSimplifyDis(m_dSimplifyDis);
    dilution.SetOnceSimpPt(kPointsAtOnce);
    dilution.SetEpurate(m_bEpurate);
    out = m_vecPtLst;
    dilution.SimplifyPt(out, level, wide, true);
}
