#include "record/recording_strategy.h"

#include <algorithm>
#include <cmath>

#include "record/recent.h"
#include "track/geodesy.h"

namespace {

constexpr double kLongStep = 5.0;  // [s] from here on positions tell the distance better than speeds

// Widened before the difference is taken: it may exceed 32 bits.
double SecondsFrom(std::int32_t earlier, std::int32_t later) {
    const double from = earlier;
    return later - from;
}

double Distance(const TckPt& from, const TckPt& to) {  // [m]
    double distance = 0.0;
    double bearing = 0.0;
    CalDistance(from.dLatitude, from.dLongitude, to.dLatitude, to.dLongitude, 0, &distance, &bearing);
    return distance;
}

double StepLength(const TckPt& last, const TckPt& fix) {  // [m]
    const double seconds = SecondsFrom(last.lTime, fix.lTime);
    if (seconds >= kLongStep) return Distance(fix, last);
    return std::fabs((last.dSpeed + fix.dSpeed) * seconds * 0.5);
}

}  // namespace

ITrackSaveStragy::~ITrackSaveStragy() = default;

bool ITrackSaveStragy::IsTimely(const TckPt& fix) const {
    if (fix.lTime == 0) return false;
    return m_lLastFixTime == 0 || fix.lTime >= m_lLastFixTime;
}

void ITrackSaveStragy::GetRecentPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int seconds) {
    if (m_vecSavePt.empty()) return;
    const RecentPoints recent(seconds);
    for (const TckPt& point : m_vecSavePt)
        if (recent.Contains(point)) out.push_back(point);
}

void CChosenPoints::ClearSavePtLst() { m_vecSavePt.clear(); }

void CChosenPoints::GetSavePtLst(std::vector<TckPt, je_allocator<TckPt>>& out) { out = m_vecSavePt; }

// An interval of 0 would have no batch size; it chooses every fix, as 1 does with one fix a second.
CTrackTimeStragy::CTrackTimeStragy(std::uint32_t interval)
    : m_uInterval(interval), m_uBatchSize(s_iBatchSeconds / std::max<std::uint32_t>(interval, 1)) {}

int CTrackTimeStragy::AddFixPt(const TckPt& fix) {
    if (!IsTimely(fix)) return 0;
    if (std::fabs(SecondsFrom(m_lLastFixTime, fix.lTime)) >= m_uInterval) {
        m_vecSavePt.push_back(fix);
        m_lLastFixTime = fix.lTime;
    }
    return BatchState(m_uBatchSize);
}

CRunStragy::CRunStragy(double distanceBreak, std::size_t batchLimit)
    : m_dDistanceBreak(distanceBreak), m_batchLimit(batchLimit) {}

int CRunStragy::AddFixPt(const TckPt& fix) {
    if (!IsTimely(fix)) return 0;
    m_lLastFixTime = fix.lTime;
    if (m_vecPendingPt.empty()) {
        m_vecPendingPt.push_back(fix);
        return 0;
    }
    m_dAccumulated += StepLength(m_vecPendingPt.back(), fix);
    if (IsRunComplete(fix)) return CompleteRun(fix);
    ContinueRun(fix);
    return 0;
}

// The point chosen is the one that began the run; the new fix begins the next.
int CRunStragy::CompleteRun(const TckPt& fix) {
    m_vecSavePt.push_back(m_vecPendingPt.front());
    m_vecPendingPt.assign(1, fix);
    m_dAccumulated = 0.0;
    return BatchState(m_batchLimit);
}

// What lies between the first and the newest fix is never asked for again, and a parked car has no end of it.
void CRunStragy::ContinueRun(const TckPt& fix) {
    if (m_vecPendingPt.size() < 2) m_vecPendingPt.push_back(fix);
    m_vecPendingPt.back() = fix;
}

CTrackDistStragy::CTrackDistStragy(double distanceBreak) : CRunStragy(distanceBreak, s_iBatchLimit) {}

bool CTrackDistStragy::IsRunComplete(const TckPt&) const { return m_dAccumulated >= m_dDistanceBreak; }

CTrackAutoStragy::CTrackAutoStragy(double distanceBreak, std::uint32_t timeBreak)
    : CRunStragy(distanceBreak, s_iBatchLimit), m_uTimeBreak(timeBreak) {}

bool CTrackAutoStragy::IsRunComplete(const TckPt& fix) const {
    return m_dAccumulated >= m_dDistanceBreak ||
           SecondsFrom(m_vecPendingPt.front().lTime, fix.lTime) >= m_uTimeBreak;
}
