// The recording in a device folder: opened, fed with fixes, stopped and saved as a track, through the track
// manager. What was saved: host/saved_track.h. Where it lies: host/device_folder.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/device_folder.h"
#include "host/host_settings.h"
#include "qtrace.h"

namespace host {

// One at a time: the library underneath is one for the process. One thread.
class LiveRecording {
 public:
    // `save`: unsaved points are saved as a track before they are overwritten.
    LiveRecording(const DeviceFolder& device, const HostSettings& settings, bool save);
    ~LiveRecording();  // stops, and closes the recording's files
    LiveRecording(const LiveRecording&) = delete;
    LiveRecording& operator=(const LiveRecording&) = delete;

    // Loads what is there and starts recording. Otherwise says why not.
    std::optional<std::string> Open();
    void Offer(const TckPt& fix);
    void Stop();  // writes what is pending

    // Saves the whole recording as a track. Otherwise says why not.
    std::optional<std::string> Save();
    // The points that a save writes: each slice thinned.
    std::uint64_t PointsToSave() const;

    std::uint64_t PointsBefore() const { return m_pointsBefore; }  // in the recording when it was opened
    std::uint64_t PointsAdded() const { return m_pointsAdded; }    // written since
    std::uint64_t Points() const;                                  // in the recording now
    int Slices() const;
    double Fill() const;      // of the recording's capacity, 0 to 1
    long NewestTime() const;  // of the fix recorded last [s since 1970], 0 before the first
    bool WasFull() const;     // it took no more points, since it must not overwrite

 private:
    bool WaitUntilLoaded() const;
    bool FilesAreOpen() const;
    std::int64_t WritingPlace() const;
    void CountAdded();
    void WaitForAFreshName() const;

    const DeviceFolder& m_device;
    bool m_overwrite;
    CTrackMan& m_manager;
    std::uint64_t m_pointsBefore = 0;
    std::uint64_t m_pointsAdded = 0;
    std::int64_t m_writingPlace = 0;
};

}  // namespace host
