#include "host/page/track_index.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/settings/device_folder.h"
#include "host/settings/device_path.h"
#include "host/text/extension.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

std::string RevisionOf(std::uintmax_t size, fs::file_time_type written) {
    return std::to_string(size) + '-' + std::to_string(written.time_since_epoch().count());
}

}  // namespace

TrackIndex::TrackIndex(const HostSettings& settings) {
    const DeviceFolder device(settings);
    m_folders.push_back({device.Tracks(), DevicePath(settings.tracks)});
    if (settings.card) m_folders.push_back({device.CardTracks(), DevicePath(settings.cardTracks)});
}

// The entries change here alone, so they are read without the lock that keeps the readers away from a change.
bool TrackIndex::Refresh() {
    const std::lock_guard alone(m_refreshing);
    Entries now;
    for (const Folder& folder : m_folders) LookInto(folder, m_entries, now);
    const bool isSame = std::equal(now.begin(), now.end(), m_entries.begin(), m_entries.end(),
                                   [](const auto& a, const auto& b) {
                                       return a.first == b.first && a.second.state == b.second.state &&
                                              a.second.devicePath == b.second.devicePath;
                                   });
    const std::lock_guard lock(m_mutex);
    m_entries.swap(now);
    return !isSame;
}

// Of two files of one name the first folder's counts. A file that goes while it is looked at is not there.
void TrackIndex::LookInto(const Folder& folder, const Entries& before, Entries& now) {
    std::error_code problem;
    for (fs::directory_iterator file(folder.onDisk, problem), end; !problem && file != end;
         file.increment(problem)) {
        std::error_code gone;
        if (!IsTrackFile(file->path()) || !file->is_regular_file(gone)) continue;
        const FileState state{file->file_size(gone), file->last_write_time(gone)};
        const std::string id = Utf8Of(file->path().filename());
        if (gone || now.contains(id)) continue;
        const auto known = before.find(id);
        const bool isKnown = known != before.end() && known->second.state == state;
        now[id] = isKnown ? known->second : ReadHeader(id, folder, state);
    }
}

TrackIndex::Entry TrackIndex::ReadHeader(const std::string& id, const Folder& folder, const FileState& state) {
    ++m_headersRead;
    Entry entry{state, FromUtf8(folder.onDevice + '\\' + id), nullptr, 0};
    CTrackProxy track(entry.devicePath.c_str());
    if (!track.Load(nullptr)) return entry;
    entry.start = track.GetStartTime();
    entry.header = {{"id", id},
                    {"name", ToUtf8(track.GetName())},
                    {"color", ColorText(track.GetColor())},
                    {"shown", track.GetVisible()},
                    {"length", track.GetLength()},
                    {"point_count", track.GetPtCount()},
                    {"start", IsoTime(track.GetStartTime())},
                    {"end", IsoTime(track.GetEndTime())},
                    {"revision", RevisionOf(state.size, state.written)}};
    return entry;
}

Json TrackIndex::List() const {
    const std::lock_guard lock(m_mutex);
    std::vector<const Entry*> tracks;
    for (const auto& [id, entry] : m_entries)
        if (!entry.header.is_null()) tracks.push_back(&entry);
    std::stable_sort(tracks.begin(), tracks.end(),
                     [](const Entry* a, const Entry* b) { return a->start > b->start; });
    Json list = Json::array();
    for (const Entry* track : tracks) list.push_back(track->header);
    return list;
}

std::optional<std::string> TrackIndex::PathOf(const std::string& id) const {
    const std::lock_guard lock(m_mutex);
    const auto known = m_entries.find(id);
    const bool isTrack = known != m_entries.end() && !known->second.header.is_null();
    return isTrack ? std::optional(known->second.devicePath) : std::nullopt;
}

std::optional<DrawnTrack> TrackIndex::Read(const std::string& id) const {
    const auto path = PathOf(id);
    if (!path) return std::nullopt;
    CTrackProxy track(path->c_str());
    if (!track.Load(nullptr)) return std::nullopt;
    return ReadDrawnTrack(track);
}

}  // namespace host
