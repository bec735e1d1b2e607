// The manager itself: its life, the recording, the callbacks. List of tracks: track_list.cpp. Loading:
// storage_scan.cpp.
#include <algorithm>

#include "library/track_manager.h"
#include "record/recording_strategy.h"

CTrackMan* CTrackMan::m_pInstance = nullptr;

namespace {

constexpr unsigned short kRecordingCapacity = 10000;  // points
constexpr double kFilledByOnePoint = 0.0001;
constexpr int kMostOpenAttempts = 3;
constexpr int kRoomForTracks = 20;

}  // namespace

CTrackMan* CTrackMan::Instance() {
    if (m_pInstance == nullptr) m_pInstance = new CTrackMan;
    return m_pInstance;
}

CTrackMan::CTrackMan() : m_logTrack(kRecordingCapacity) { CTrackMan::Init(); }

CTrackMan::CTrackMan(const CTrackMan& other)
    : m_logTrack(other.m_logTrack),
      m_pSettings(other.m_pSettings),
      m_pPointCallback(other.m_pPointCallback),
      m_pLoadCallback(other.m_pLoadCallback.load()),
      m_pSingleTrackCallback(other.m_pSingleTrackCallback),
      m_pSpaceCallback(other.m_pSpaceCallback),
      m_bInUse(other.m_bInUse),
      m_iReserved(other.m_iReserved) {}

CTrackMan::~CTrackMan() {
    StopLoadDataToMapThread();
    FlushOut();
    m_logTrack.CloseEx();
    delete m_pStragy;
    DestroyTracks();
    if (m_pInstance == this) m_pInstance = nullptr;
}

void CTrackMan::Init() {
    StopLoadDataToMapThread();
    m_bInUse = false;
    m_iReserved = 0;
    DestroyTracks();
    m_lstScan.clear();
    m_bLoading = true;
    m_pPointCallback = nullptr;
    m_pLoadCallback = nullptr;
    m_pSingleTrackCallback = nullptr;
    m_pSpaceCallback = nullptr;
    m_pSettings = CTrackMangSet::Instance();
}

bool CTrackMan::Load(void*) { return true; }
bool CTrackMan::Save(void*) { return true; }
void CTrackMan::SaveConfig() {}

// --- Recording ---

void CTrackMan::InitSetting() {
    m_logTrack.CloseEx();  // brings to the storage what it had no room for
    m_logTrack.ClearAllSliceTrace();
    m_logTrack.SetOverWrt(m_pSettings->GetTrackOverWriteMode());
    m_logTrack.SetFilePathEx("Log.dat", "LogHd.dat");
    for (int attempt = 0; attempt < kMostOpenAttempts && !m_logTrack.OpenEx(); ++attempt) {
    }
    CTrack::SetDefaultColor(m_pSettings->GetTrackDefaultColor());
}

// A recording by time needs an interval: without one nothing is recorded.
ITrackSaveStragy* CTrackMan::CreateSaveStragy() {
    const auto seconds = static_cast<std::uint32_t>(m_pSettings->GetRecordTimeBrk());
    const double metres = m_pSettings->GetRecordDisBrk();
    switch (m_pSettings->GetTrackRecordMode()) {
        case RecTrackByDist:
            return new CTrackDistStragy(metres);
        case RecTrackByTime:
            return seconds == 0 ? nullptr : new CTrackTimeStragy(seconds);
        case RecTrackAuto:
            return new CTrackAutoStragy(metres, seconds);
        default:
            return nullptr;
    }
}

bool CTrackMan::Start() {
    if (m_pStragy != nullptr) return false;
    m_pStragy = CreateSaveStragy();
    return true;
}

bool CTrackMan::isStart() { return m_pStragy != nullptr; }

bool CTrackMan::Stop() {
    if (m_pStragy == nullptr) return false;
    FlushOut();
    delete m_pStragy;
    m_pStragy = nullptr;
    return true;
}

void CTrackMan::SaveToTempTrack(const TckPt& fix) {
    if (m_pStragy == nullptr || m_bLoading) return;
    const int state = m_pStragy->AddFixPt(fix);
    if (state == 2) {
        std::vector<TckPt, je_allocator<TckPt>> batch;
        m_pStragy->GetSavePtLst(batch);
        if (m_logTrack.IsNeedSaveAllTmpTrk(static_cast<int>(batch.size()))) SaveTempTrkToTrack(batch);
        m_logTrack.AppendEx(batch);
        m_pStragy->ClearSavePtLst();
    }
    if (state != 0 && m_pPointCallback != nullptr) m_pPointCallback(fix);
}

void CTrackMan::FlushOut() {
    if (m_pStragy == nullptr) return;
    std::vector<TckPt, je_allocator<TckPt>> batch;
    m_pStragy->GetSavePtLst(batch);
    m_logTrack.AppendEx(batch);
    m_pStragy->ClearSavePtLst();
}

void CTrackMan::GetTopTmpPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int seconds) {
    out.clear();
    m_logTrack.GetTopPtLst(out, seconds);
    if (m_pStragy != nullptr) m_pStragy->GetRecentPtLst(out, seconds);
}

bool CTrackMan::SaveTempTrkToTrack(std::vector<TckPt, je_allocator<TckPt>>& pending) {
    CTrack track;
    track.SetName(("AutoSaveTrk-" + GetUnusedName()).c_str());
    track.SetColor(m_pSettings->GetTrackDefaultColor());
    AppendSlices(track);
    for (const TckPt& point : pending) track.AppendPt(point, false);
    const CTrackProxy stored(track, false);
    return track.IsSaveSus();
}

// The slices one behind the other, each thinned on its own.
void CTrackMan::AppendSlices(CTrack& track) {
    for (int i = 0; i < m_logTrack.GetSliceNum(); ++i) {
        CTrack slice;
        slice.AppendPt(*m_logTrack.GetSliceTrace(i));
        slice.SimplifyPt();
        track.AppendPt(slice);
    }
}

CTrackEx* CTrackMan::GetLogTrack() { return &m_logTrack; }
CTrackMangSet* CTrackMan::GetTrackMangSet() { return m_pSettings; }
double CTrackMan::GetSpaceRate() { return static_cast<double>(m_logTrack.GetPtCount()) * kFilledByOnePoint; }
bool CTrackMan::IsFull() { return false; }

// --- Callbacks and marks ---

void CTrackMan::SetTmpTrackPtShowInMapCallFun(void (*callback)(const TckPt&)) { m_pPointCallback = callback; }
void CTrackMan::SetLoadTrackToMapCallFun(void (*callback)()) { m_pLoadCallback = callback; }
void CTrackMan::SetLoadSgTrackToMapCallFun(void (*callback)(CTrackProxy*)) {
    m_pSingleTrackCallback = callback;
}
void CTrackMan::SetIsHasEnoughSpaceCallFun(bool (*callback)(bool)) { m_pSpaceCallback = callback; }

bool CTrackMan::hasEnoughSpace(bool onCard) { return m_pSpaceCallback != nullptr && m_pSpaceCallback(onCard); }

void CTrackMan::SetInUse(bool inUse) { m_bInUse = inUse; }
bool CTrackMan::GetInUse() { return m_bInUse; }

// KEPT: no track is ever reported as in use, none is refused for want of room; hosts rely on these answers.
// Pinned by Manager.InUseOfATrack_IsFalseForEveryIndex and TrackList.TwentyFirstTrack_IsAdded.
bool CTrackMan::InUse(unsigned long) { return false; }
int CTrackMan::GetUseable() { return std::max(0, kRoomForTracks - static_cast<int>(GetCnt())); }
