#include "host/tracks/library.h"

#include "host/settings/device_path.h"
#include "host/text/extension.h"
#include "host/text/utf8_path.h"
#include "host/tracks/free_name.h"

namespace host {
namespace {

const DeviceFolder* s_pDevice = nullptr;  // the library's callbacks are plain functions

bool HasRoom(bool) { return s_pDevice->HasRoom(); }

}  // namespace

Library::Library(const HostSettings& settings) : m_device(settings), m_manager(ApplySettings(settings)) {
    s_pDevice = &m_device;
    m_manager.SetIsHasEnoughSpaceCallFun(HasRoom);
    m_manager.RefreshFilelist();
}

std::vector<CTrackProxy*> Library::Tracks() const {
    std::vector<CTrackProxy*> tracks;
    for (unsigned long i = 0; i < m_manager.GetCnt(); ++i) tracks.push_back(m_manager.GetTrack(i));
    return tracks;
}

CTrackProxy* Library::Find(const std::string& name) const {
    if (const int exact = m_manager.GetTrackSel(name); exact >= 0)
        return m_manager.GetTrack(static_cast<unsigned long>(exact));
    if (CTrackProxy* track = m_manager.GetTrack(name)) return track;
    if (CTrackProxy* track = m_manager.GetTrackByFile(name)) return track;
    const std::filesystem::path file = PathOf(name);
    return IsTrackFile(file) ? m_manager.GetTrackByFile(Utf8Of(file.stem())) : nullptr;
}

std::string Library::FreeName(const std::string& name) const {
    return FreeTrackName(m_manager, m_device, name);
}

std::optional<std::string> Library::Store(CTrack& track) const {
    if (const auto problem = m_device.Prepare()) return problem;
    track.Calculate(true);
    if (!m_manager.AddTrack(track)) return WhyNotStored();
    const unsigned long place = m_manager.GetCnt() - 1;  // not by its name: a file that is missing has none
    if (ReadsBack(*m_manager.GetTrack(place), track.GetPtCount())) return std::nullopt;
    m_manager.DelTrack(place);
    return WhyNotStored();
}

bool Library::ReadsBack(CTrackProxy& stored, std::size_t points) const {
    CTrackProxy onDisk(stored.GetTrackPath());
    Points readBack;
    if (onDisk.Load(nullptr)) onDisk.GetPtList(readBack);
    return readBack.size() == points;
}

std::string Library::WhyNotStored() const {
    bool onCard = false;
    if (!m_manager.GetStoragePlace(onCard))
        return "there is no place for it: no storage card, or too little room in " + Utf8Of(m_device.Root());
    const std::filesystem::path& folder = onCard ? m_device.CardTracks() : m_device.Tracks();
    return "the folder " + Utf8Of(folder) + " does not take it: full, read-only or gone";
}

std::filesystem::path Library::FileOf(CTrackProxy& track) const {
    return host::FileOf(m_device, track.GetTrackPath());
}

}  // namespace host
