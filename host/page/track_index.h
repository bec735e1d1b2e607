// The saved tracks as the page's server knows them: what lies in the track folders now, and what the files'
// headers say. It stays away from the library's own list, which belongs to the thread that records.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/page/drawn_track.h"
#include "host/settings/host_settings.h"
#include "host/text/json.h"

namespace host {

// Any thread. Files are read side by side, each through a handle that no other thread has; only looks at the
// folders wait for each other. A header is read once for each state of its file, told by size and write time.
class TrackIndex {
 public:
    explicit TrackIndex(const HostSettings& settings);

    // Looks at the folders. True when a track appeared, changed or vanished since the last look. Files that are
    // no tracks, or cannot be read, are left out.
    bool Refresh();

    // Newest first, by the time they begin: id (the file name), name, color, shown, length, points, start, end;
    // revision, which changes when the file does.
    Json List() const;

    // Figures and points of one track of the list; nothing for any other name.
    std::optional<DrawnTrack> Read(const std::string& id) const;

    std::uint64_t HeadersRead() const { return m_headersRead; }  // since it was made

 private:
    struct FileState {
        std::uintmax_t size = 0;
        std::filesystem::file_time_type written;
        bool operator==(const FileState&) const = default;
    };
    struct Entry {
        FileState state;
        std::string devicePath;  // code page of the settings
        Json header;             // null when the file is no track
        long start = 0;          // [s since 1970] for the order
    };
    struct Folder {
        std::filesystem::path onDisk;
        std::string onDevice;  // UTF-8
    };
    using Entries = std::map<std::string, Entry>;

    void LookInto(const Folder& folder, const Entries& before, Entries& now);
    Entry ReadHeader(const std::string& id, const Folder& folder, const FileState& state);
    std::optional<std::string> PathOf(const std::string& id) const;

    std::vector<Folder> m_folders;
    std::mutex m_refreshing;     // held for a whole look at the folders, and taken first
    mutable std::mutex m_mutex;  // of the entries, for a moment
    Entries m_entries;
    std::atomic<std::uint64_t> m_headersRead = 0;
};

}  // namespace host
