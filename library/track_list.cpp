// The list of stored tracks: finding, adding, deleting, order. Names: track_names.cpp. How it is filled:
// storage_scan.cpp.
#include <algorithm>

#include "library/track_manager.h"
#include "util/kept_leak.h"
#include "util/text.h"
#include "util/time.h"

namespace {

std::string InCapitals(std::string text) {
    UpString(text);
    return text;
}

}  // namespace

void CTrackMan::DestroyTracks() {
    for (const CTrackProxy* track : m_vecTracks) delete track;
    m_vecTracks.clear();
}

void CTrackMan::DestroyTrack(std::size_t index) {
    m_vecTracks[index]->DestoryData();
    delete m_vecTracks[index];
    m_vecTracks.erase(m_vecTracks.begin() + static_cast<std::ptrdiff_t>(index));
}

unsigned long CTrackMan::GetCnt() const { return static_cast<unsigned long>(m_vecTracks.size()); }

CTrackProxy* CTrackMan::GetTrack(unsigned long index) {
    return index < m_vecTracks.size() ? m_vecTracks[index] : nullptr;
}

CTrackProxy* CTrackMan::GetTrack(const std::string& name) {
    const std::string wanted = InCapitals(name);
    for (CTrackProxy* track : m_vecTracks)
        if (InCapitals(track->GetName()) == wanted) return track;
    return nullptr;
}

CTrackProxy* CTrackMan::GetTrackByFile(const std::string& fileName) {
    const std::string wanted = InCapitals(fileName);
    for (CTrackProxy* track : m_vecTracks)
        if (InCapitals(track->GetTrkFileName()) == wanted) return track;
    return nullptr;
}

int CTrackMan::GetTrackSel(const std::string& name) {
    for (std::size_t i = 0; i < m_vecTracks.size(); ++i)
        if (m_vecTracks[i]->GetName() == name) return static_cast<int>(i);
    return -1;
}

int CTrackMan::GetVisibleTrkCnt() {
    return static_cast<int>(std::count_if(m_vecTracks.begin(), m_vecTracks.end(),
                                          [](CTrackProxy* track) { return track->GetVisible(); }));
}

bool CTrackMan::AddTrack(CTrackProxy* proxy) {
    if (proxy == nullptr || GetTrackSel(proxy->GetName()) >= 0) return false;
    m_vecTracks.push_back(proxy);
    return true;
}

// KEPT: the file is written before the name is checked, so that a track is never lost for its name; and the
// handle that is refused is not destroyed. Pinned by
// TrackList.AddedTrackOfAnExistingName_IsRefusedButItsFileStays.
bool CTrackMan::AddTrack(CTrack& track) {
    auto* proxy = new CTrackProxy(track, true);
    if (track.IsSaveSus() && AddTrack(proxy)) return true;
    KeepLeaked(proxy);
    return false;
}

void CTrackMan::DelTrack(unsigned long index) {
    if (index < m_vecTracks.size()) DestroyTrack(index);
}

void CTrackMan::DelTrack(const std::string& name) {
    const int index = GetTrackSel(name);
    if (index >= 0) DestroyTrack(static_cast<std::size_t>(index));
}

void CTrackMan::DelAllTrack() {
    for (CTrackProxy* track : m_vecTracks) track->DestoryData();
    DestroyTracks();
}

std::string CTrackMan::GetUnusedName() { return GetLocalTimeStr(); }

void CTrackMan::SortTrackFile() {
    std::stable_sort(m_vecTracks.begin(), m_vecTracks.end(), [](CTrackProxy* a, CTrackProxy* b) {
        return a->GetLstWriteTime() > b->GetLstWriteTime();
    });
}
