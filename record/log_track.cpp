// The recording in memory: its slices and what is asked of them. Its files: record/log_track_files.cpp.
#include "record/log_track.h"

#include <algorithm>
#include <cmath>

#include "platform/file.h"
#include "record/append_redo.h"
#include "record/recent.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

constexpr std::uint16_t kDefaultCapacity = 10000;  // points
constexpr double kWayBackTolerance = 25.0;         // [m]
constexpr double kUsualTolerance = 2.0;            // [m] as a new track has it

// Widened before the difference is taken: it may exceed 32 bits.
double SecondsBetween(const TckPt& a, const TckPt& b) {
    const double earlier = a.lTime;
    return std::fabs(b.lTime - earlier);
}

}  // namespace

CTrackEx::CTrackEx() : CTrackEx(kDefaultCapacity) {}

CTrackEx::CTrackEx(unsigned short capacity)
    : m_pRedo(std::make_unique<log_file::AppendRedo>()), m_usMaxPtCount(capacity) {}

CTrackEx::CTrackEx(const CTrackEx& other)
    : CTrack(other), m_pRedo(std::make_unique<log_file::AppendRedo>()), m_usMaxPtCount(kDefaultCapacity) {}

// KEPT: the slices are not destroyed here. Hosts may still draw a slice that they were given; who is done with
// them calls CloseEx first. Pinned by LogTrackOpening.Destructor_LeavesTheSlicesToWhoeverHoldsThem.
CTrackEx::~CTrackEx() {
    platform::fclose(m_pPointFile);
    platform::fclose(m_pHeadFile);
}

long CTrackEx::GetStartTime() { return m_vecSlices.empty() ? 0 : m_vecSlices.front()->GetStartTime(); }

long CTrackEx::GetEndTime() { return m_vecSlices.empty() ? 0 : m_vecSlices.back()->GetEndTime(); }

double CTrackEx::GetLength() {
    double length = 0.0;
    for (CTrack* slice : m_vecSlices) length += slice->GetLength();
    return length;
}

unsigned long CTrackEx::GetPtCount() { return m_uPtCount; }

int CTrackEx::GetSliceNum() { return static_cast<int>(m_vecSlices.size()); }

const CTrack* CTrackEx::GetSliceTrace(int i) {
    return i < 0 || i >= GetSliceNum() ? nullptr : m_vecSlices[static_cast<std::size_t>(i)];
}

void CTrackEx::ClearSliceTrace(int i) {
    if (GetSliceTrace(i) == nullptr) return;
    const auto slice = m_vecSlices.begin() + i;
    m_uPtCount -= static_cast<std::uint32_t>(std::min<unsigned long>((*slice)->GetPtCount(), m_uPtCount));
    delete *slice;
    m_vecSlices.erase(slice);
}

void CTrackEx::ClearAllSliceTrace() {
    m_vecGaps.clear();
    OwnPoints() = Points();
    FreeSlices();
    m_uPtCount = 0;
    m_uUnwritten = 0;
}

void CTrackEx::InitData() {
    const Points& points = GetPtList();
    FreeSlices();
    m_vecGaps.assign(points.size(), 0.0);
    for (std::size_t i = 1; i < points.size(); ++i) m_vecGaps[i] = SecondsBetween(points[i - 1], points[i]);
}

void CTrackEx::DoSlice() {
    InitData();
    for (std::size_t i = 0; i < m_vecGaps.size(); ++i) {
        CTrack& slice = i == 0 || m_vecGaps[i] >= s_iDiffTime ? AddSlice() : *m_vecSlices.back();
        slice.AppendPt(GetPtList()[i], false);
    }
    for (CTrack* slice : m_vecSlices) slice->Calculate(false);
    OwnPoints() = Points();
}

void CTrackEx::AddPtLstToTrkLst(std::size_t count, const Points& pts, const TckPt* lastPt,
                                std::size_t oldCount) {
    const TckPt* before = lastPt;
    for (std::size_t i = 0; i < count; ++i) {
        const bool afterGap = before != nullptr && SecondsBetween(*before, pts[i]) >= s_iDiffTime;
        CTrack& slice = afterGap || m_vecSlices.empty() ? AddSlice() : *m_vecSlices.back();
        slice.AppendPt(pts[i], true);
        before = &pts[i];
    }
    const std::size_t total = oldCount + count;
    const std::size_t kept = std::min<std::size_t>(total, m_usMaxPtCount);
    if (m_bOverWrt) DropOldest(total - kept);
    m_uPtCount = static_cast<std::uint32_t>(kept);
}

CTrack& CTrackEx::AddSlice() {
    m_vecSlices.push_back(new CTrack);
    return *m_vecSlices.back();
}

void CTrackEx::FreeSlices() {
    for (CTrack* slice : m_vecSlices) delete slice;
    m_vecSlices.clear();
}

// A slice that goes as a whole needs no deletion point by point, which would mend its statistics each time.
void CTrackEx::DropOldest(std::size_t excess) {
    while (excess > 0 && !m_vecSlices.empty()) {
        CTrack* oldest = m_vecSlices.front();
        const std::size_t points = oldest->GetPtCount();
        if (points > excess) {
            oldest->DeletePoint(0, static_cast<int>(excess) - 1);
            return;
        }
        delete oldest;
        m_vecSlices.erase(m_vecSlices.begin());
        excess -= points;
    }
}

const TckPt* CTrackEx::NewestPoint() const {
    return m_vecSlices.empty() ? nullptr : &m_vecSlices.back()->GetPtList().back();
}

Points CTrackEx::AllPoints() const {
    Points all;
    all.reserve(m_uPtCount);
    for (const CTrack* slice : m_vecSlices)
        all.insert(all.end(), slice->GetPtList().begin(), slice->GetPtList().end());
    return all;
}

void CTrackEx::GetTopPtLst(Points& out, int seconds) {
    const RecentPoints recent(seconds);
    Points newestFirst;
    for (auto slice = m_vecSlices.rbegin(); slice != m_vecSlices.rend(); ++slice) {
        const Points& points = (*slice)->GetPtList();
        const auto older = std::find_if_not(points.rbegin(), points.rend(),
                                            [&](const TckPt& point) { return recent.Contains(point); });
        newestFirst.insert(newestFirst.end(), points.rbegin(), older);
        if (older != points.rend()) break;
    }
    out.insert(out.end(), newestFirst.rbegin(), newestFirst.rend());
}

void CTrackEx::SimplifyAllTrackPtAndReverse(Points& out, int level) {
    Points& wayBack = OwnPoints();
    wayBack = AllPoints();
    std::reverse(wayBack.begin(), wayBack.end());
    if (wayBack.size() < 2) {
        out = wayBack;
    } else {
        SetSimplifyDis(kWayBackTolerance);
        SimplifyPt(out, level, true);
        SetSimplifyDis(kUsualTolerance);
    }
    wayBack = Points();
}
