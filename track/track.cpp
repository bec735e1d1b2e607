#include "track/track.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#include "track/geodesy.h"
#include "util/trigonometry.h"

using geodesy::kDegToRad;
using geodesy::kHalfSquareDegree;
using geodesy::kPerSquareDegree;
using geodesy::kSquareDegree;

std::uint32_t CTrack::s_ulDefaultColor = 0x00FF0000;

namespace {

constexpr double kDefaultSimplifyMetres = 2.0;

double SquareMetres(double squareDegrees, const TckPt& first) {
    return squareDegrees * trigonometry::Cosine(first.dLatitude * kDegToRad);
}

}  // namespace

// The points as they are once those from gapBegin to gapEnd (not included) are gone, without moving any.
class CTrack::Remaining {
 public:
    Remaining(const std::vector<TckPt, je_allocator<TckPt>>& points, std::size_t gapBegin, std::size_t gapEnd)
        : m_points(points), m_gapBegin(gapBegin), m_gapSize(gapEnd - gapBegin) {}

    std::size_t size() const { return m_points.size() - m_gapSize; }
    const TckPt& operator[](std::size_t i) const { return m_points[i < m_gapBegin ? i : i + m_gapSize]; }

 private:
    const std::vector<TckPt, je_allocator<TckPt>>& m_points;
    std::size_t m_gapBegin;
    std::size_t m_gapSize;
};

CTrack::CTrack() { CTrack::Init(); }

CTrack::CTrack(const CTrack& other) = default;

CTrack::~CTrack() = default;

// KEPT: narrower than the copy constructor, see the header. The points are taken without touching the
// calculated flag. Pinned by TrackAssignment.*.
CTrack& CTrack::operator=(const CTrack& other) {
    m_strName = other.m_strName;
    m_dLength = other.m_dLength;
    m_dArea = other.m_dArea;
    m_ulColor = other.m_ulColor;
    m_iVisible = other.m_iVisible;
    m_dSimplifyDis = other.m_dSimplifyDis;
    m_vecPtLst = other.m_vecPtLst;
    return *this;
}

void CTrack::Init() {
    m_bCalculated = false;
    m_dLength = 0.0;
    m_dArea = 0.0;
    m_iVisible = 1;
    m_bSaveSus = false;
    m_ulColor = std::atomic_ref(s_ulDefaultColor).load(std::memory_order_relaxed);
    m_vecPtLst.clear();
    m_bEpurate = true;
    SetSimplifyDis(kDefaultSimplifyMetres);
}

// A load sets it while other threads may read tracks of their own.
void CTrack::SetDefaultColor(unsigned long color) {
    std::atomic_ref(s_ulDefaultColor).store(static_cast<std::uint32_t>(color), std::memory_order_relaxed);
}

void CTrack::clear() {
    m_vecPtLst.clear();
    m_bCalculated = false;
}

unsigned long CTrack::GetPtCount() { return static_cast<unsigned long>(m_vecPtLst.size()); }

const std::string& CTrack::GetName() { return m_strName; }

void CTrack::SetName(const char* name) {
    m_strName = name;
    m_strTitle = m_strName;
}

unsigned long CTrack::GetColor() { return m_ulColor; }
void CTrack::SetColor(unsigned long color) { m_ulColor = static_cast<std::uint32_t>(color); }
bool CTrack::GetVisible() { return m_iVisible != 0; }
void CTrack::SetVisible(bool visible) { m_iVisible = visible ? 1 : 0; }
bool CTrack::IsSaveSus() const { return m_bSaveSus; }
void CTrack::SetIsSaveSus(bool saved) { m_bSaveSus = saved; }
bool CTrack::bEpurate() const { return m_bEpurate; }
void CTrack::SetEpurate(bool epurate) { m_bEpurate = epurate; }
void CTrack::SetSimplifyDis(double metres) { m_dSimplifyDis = metres * geodesy::kMetresToDegrees; }
bool CTrack::IsFreeSpaceCanStoreData() { return true; }

const std::vector<TckPt, je_allocator<TckPt>>& CTrack::GetPtList() const { return m_vecPtLst; }

void CTrack::GetPtList(TckPt* buf, int n) const {
    if (buf == nullptr || n <= 0 || static_cast<std::size_t>(n) > m_vecPtLst.size()) return;
    std::copy_n(m_vecPtLst.begin(), n, buf);
}

void CTrack::GetPtList(std::vector<TckPt, je_allocator<TckPt>>& out) const { out = m_vecPtLst; }

double CTrack::GetLength() {
    if (!m_bCalculated || m_dLength == 0.0) m_dLength = AidCalLength(m_vecPtLst);
    return m_dLength;
}

double CTrack::GetArea() {
    if (!m_bCalculated || m_dArea == 0.0) m_dArea = AidCalArea(m_vecPtLst);
    return std::fabs(m_dArea);
}

// Only the end points count, so that a reversed track keeps its true start and end.
long CTrack::GetStartTime() {
    if (m_bCalculated && m_lStartTime != 0) return m_lStartTime;
    m_lStartTime = m_vecPtLst.empty() ? 0 : std::min(m_vecPtLst.front().lTime, m_vecPtLst.back().lTime);
    return m_lStartTime;
}

long CTrack::GetEndTime() {
    if (m_bCalculated && m_lEndTime != 0) return m_lEndTime;
    m_lEndTime = m_vecPtLst.empty() ? 0 : std::max(m_vecPtLst.front().lTime, m_vecPtLst.back().lTime);
    return m_lEndTime;
}

void CTrack::Calculate(bool force) {
    if (force) m_bCalculated = false;
    GetArea();
    GetLength();
    GetStartTime();
    GetEndTime();
    m_bCalculated = true;
}

void CTrack::RefreshTimes() {
    m_bCalculated = false;
    GetStartTime();
    GetEndTime();
    m_bCalculated = true;
}

void CTrack::AppendPt(const TckPt& pt, bool incremental) {
    if (!incremental) {
        m_vecPtLst.push_back(pt);
        m_bCalculated = false;
        return;
    }
    const double step = m_vecPtLst.empty() ? 0.0 : CalTwoPointLength(pt, m_vecPtLst.back());
    m_dArea = CalArea(pt);
    m_dLength += step;
    m_vecPtLst.push_back(pt);
    RefreshTimes();
}

void CTrack::AppendPt(const CTrack& other) {
    const std::size_t count =
        std::min<std::size_t>(const_cast<CTrack&>(other).GetPtCount(), other.m_vecPtLst.size());
    const std::size_t before = m_vecPtLst.size();
    m_vecPtLst.resize(before + count);
    std::copy_n(other.m_vecPtLst.begin(), count, m_vecPtLst.begin() + static_cast<std::ptrdiff_t>(before));
    m_bCalculated = false;
}

bool CTrack::DeletePoint(int index) { return DeletePoint(index, index); }

// The statistics are mended as if the points were taken out one by one, from the last down; the list moves only
// once.
bool CTrack::DeletePoint(int first, int last) {
    const auto count = static_cast<int>(m_vecPtLst.size());
    if (first < 0 || last >= count || first > last) return false;
    const auto gapEnd = static_cast<std::size_t>(last) + 1;
    for (std::size_t i = gapEnd; i-- > static_cast<std::size_t>(first);) {
        const Remaining left(m_vecPtLst, i, gapEnd);
        MendLength(m_vecPtLst[i], i, left);
        MendArea(m_vecPtLst[i], i, left);
    }
    m_vecPtLst.erase(m_vecPtLst.begin() + first, m_vecPtLst.begin() + last + 1);
    RefreshTimes();
    return true;
}

void CTrack::MendLength(const TckPt& deleted, std::size_t index, const Remaining& left) {
    const std::size_t count = left.size();
    if (count < 2) {
        m_dLength = 0.0;
    } else if (count == 2) {
        m_dLength = CalTwoPointLength(left[0], left[1]);
    } else if (index == 0) {
        m_dLength -= CalTwoPointLength(left[0], deleted);
    } else if (index == count) {
        m_dLength -= CalTwoPointLength(left[count - 1], deleted);
    } else {
        m_dLength = m_dLength - CalTwoPointLength(left[index], deleted) -
                    CalTwoPointLength(left[index - 1], deleted) +
                    CalTwoPointLength(left[index - 1], left[index]);
    }
}

// The area is scaled by the first point's latitude: unscale by the old first point, exchange the edges, scale
// by the new.
void CTrack::MendArea(const TckPt& deleted, std::size_t index, const Remaining& left) {
    const std::size_t count = left.size();
    if (count < 3) {
        m_dArea = 0.0;
        return;
    }
    const TckPt& oldFirst = index == 0 ? deleted : left[0];
    const TckPt& previous = left[(index + count - 1) % count];
    const TckPt& next = left[index % count];
    double sum = (m_dArea / trigonometry::Cosine(oldFirst.dLatitude * kDegToRad)) * kPerSquareDegree * 2.0;
    sum = (sum - CalTwoPointChaChen(previous, deleted) - CalTwoPointChaChen(deleted, next) +
           CalTwoPointChaChen(previous, next)) *
          0.5;
    m_dArea = SquareMetres(sum * kSquareDegree, left[0]);
}

void CTrack::Reverse() {
    std::reverse(m_vecPtLst.begin(), m_vecPtLst.end());
    m_lStartTime = 0;
    m_lEndTime = 0;
    GetEndTime();
    GetStartTime();
}

double CTrack::CalTwoPointLength(const TckPt& a, const TckPt& b) { return geodesy::Distance(a, b); }

double CTrack::CalTwoPointChaChen(const TckPt& a, const TckPt& b) {
    return a.dLongitude * b.dLatitude - a.dLatitude * b.dLongitude;
}

// The old closing edge, last to first, gives way to last to new to first. Two points make a first triangle.
double CTrack::CalArea(const TckPt& newPt) const {
    const std::size_t count = m_vecPtLst.size();
    if (count < 2) return 0.0;
    const TckPt& first = m_vecPtLst.front();
    const TckPt& last = m_vecPtLst.back();
    const double closing = CalTwoPointChaChen(newPt, first);
    if (count == 2) {
        const double sum = closing + (CalTwoPointChaChen(last, newPt) + CalTwoPointChaChen(first, last));
        return SquareMetres(sum * 0.5 * kSquareDegree, first);
    }
    const double change = closing - CalTwoPointChaChen(last, first) + CalTwoPointChaChen(last, newPt);
    return SquareMetres(change * kHalfSquareDegree, first) + m_dArea;
}
