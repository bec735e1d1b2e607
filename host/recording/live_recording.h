// The recording in a device folder: opened, fed with fixes, stopped, saved as a track and cleared, through the
// track manager. Its saving: live_recording_save.cpp. What was saved: host/recording/saved_track.h. Where it
// lies: host/settings/device_folder.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "host/recording/saved_track.h"
#include "host/recording/stop_signals.h"
#include "host/settings/device_folder.h"
#include "host/settings/host_settings.h"
#include "host/source/fix_source.h"
#include "qtrace.h"

namespace host {

// One at a time: the library underneath is one for the process. One thread.
class LiveRecording {
 public:
    using Observer = std::function<void(const TckPt&)>;
    using Problem = std::string;
    struct Gap {
        std::int64_t seconds = 0;
        double metres = 0;
    };

    // `save`: unsaved points are saved as a track before they are overwritten. `say` hears what goes wrong
    // while it records; Troubles() counts it.
    LiveRecording(const DeviceFolder& device, const HostSettings& settings, bool save, Say say);
    ~LiveRecording();  // stops, and closes the recording's files
    LiveRecording(const LiveRecording&) = delete;
    LiveRecording& operator=(const LiveRecording&) = delete;

    // Loads what is there. Otherwise says why not; after a stop there may be no reason but that.
    std::optional<Problem> Open(StopSignals& stop);

    // `observer` sees each point as soon as it is recorded, on this thread.
    void Start(Observer observer = nullptr);
    void Offer(const TckPt& fix);
    void Flush();  // writes the points that wait
    // How long the oldest of them has waited; 0 when none does.
    std::chrono::steady_clock::duration Waiting() const;
    void Stop();  // writes what is pending

    // Saves the whole recording as a track of this name (code page), or of the time when it is empty; with a
    // number behind it when the name is taken. The file has been read back. Otherwise says why not, and no file
    // is left. Not while it is started.
    std::variant<SavedTrack, Problem> Save(const std::string& name);
    bool IsSaved() const;  // all of it, and nothing was added since
    // Removes all points, in memory and on disk. Otherwise says why not. Not while it is started.
    std::optional<Problem> Clear();

    // Tracks that were saved before their points were overwritten.
    const std::vector<SavedTrack>& AutomaticSaves() const { return m_automaticSaves; }
    int Troubles() const { return m_troubles; }
    // What is wrong with the recording on disk, if anything is.
    std::optional<Problem> Check() const;

    std::uint64_t PointsBefore() const { return m_pointsBefore; }  // in the recording when it was opened
    std::uint64_t PointsAdded() const { return m_pointsAdded; }    // written since
    std::uint64_t PointsWaiting() const;                           // not yet written
    std::uint64_t Points() const;                                  // in the recording now
    int Slices() const;
    double Fill() const;      // of the recording's capacity, 0 to 1
    double Distance() const;  // [m] along the points recorded since the start
    // What lies between the last point of this run and its newest fix, which by the rule of the mode is none.
    // Nothing when the fix is that point, and as long as there is no point.
    std::optional<Gap> Behind() const;
    bool WasFull() const;  // it took no more points, since it must not overwrite

 private:
    static constexpr std::uint64_t kCapacity = 10000;  // points that the library's recording holds

    bool WaitUntilLoaded(StopSignals& stop) const;
    bool FilesAreOpen() const;
    std::int64_t WritingPlace() const;
    void CountAdded();
    void AfterWriting();
    void CheckFile();
    void Complain(const Problem& problem);

    CTrack Thinned() const;
    std::string NameOfTheTime() const;
    bool WouldOverwrite(std::uint64_t points) const;
    void WaitForAFreshName() const;
    std::optional<std::uint64_t> PrepareAutomaticSave() const;
    void CheckAutomaticSave(std::uint64_t expected);
    Problem WhyNotSaved() const;

    const DeviceFolder& m_device;
    bool m_overwrite;
    unsigned m_color;
    CTrackMan& m_manager;
    Say m_say;
    std::uint64_t m_pointsBefore = 0;
    std::uint64_t m_pointsAdded = 0;
    std::int64_t m_writingPlace = 0;
    std::vector<SavedTrack> m_automaticSaves;
    std::set<std::filesystem::path> m_knownFiles;  // tracks that are no automatic save to be looked at
    int m_troubles = 0;
    bool m_isFullTold = false;
    bool m_isFileComplete = true;  // or the user was told
};

}  // namespace host
