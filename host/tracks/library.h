// The saved tracks in a device folder, as the library lists them. The live recording is never opened here: a
// listing does not disturb a recorder that runs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/settings/host_settings.h"
#include "qtrace.h"

namespace host {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

// One at a time, like the library underneath. One thread.
class Library {
 public:
    explicit Library(const HostSettings& settings);

    // Newest saved first. Handles are the library's, valid until one is deleted.
    std::vector<CTrackProxy*> Tracks() const;

    // By display name, or else by file name with or without ".gpx"; letter case is ignored, but
    // a name of exactly that case goes first. Null if there is
    // none.
    CTrackProxy* Find(const std::string& name) const;

    // A name that no track and no file of the library has: this one, or with a number behind it. `name` as
    // MakeTrackName gives it (host/tracks/track_name.h).
    std::string FreeName(const std::string& name) const;

    // Stores the track under its name, which must be free, and reads it back; its handle is listed then.
    // Otherwise says why not, and nothing is left behind: the library reports success for some writes that
    // failed.
    std::optional<std::string> Store(CTrack& track) const;

    CTrackMan& Manager() const { return m_manager; }
    const DeviceFolder& Device() const { return m_device; }
    std::filesystem::path FileOf(CTrackProxy& track) const;  // on this machine

 private:
    bool ReadsBack(CTrackProxy& stored, std::size_t points) const;
    std::string WhyNotStored() const;

    DeviceFolder m_device;
    CTrackMan& m_manager;
};

}  // namespace host
