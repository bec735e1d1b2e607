// The recording saved as a track: by the host, or by the library before it overwrites the recording's
// beginning. The recording itself: live_recording.cpp.
#include <thread>

#include "host/recording/live_recording.h"
#include "host/recording/recording_files.h"
#include "host/recording/saved_mark.h"
#include "host/settings/device_path.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/free_name.h"

namespace host {
namespace {

const std::string kAutomaticName = "AutoSaveTrk-";  // as the library begins it

std::optional<std::string> WhyBad(const std::optional<SavedTrack>& track, std::uint64_t expected) {
    if (!track) return "it cannot be read back";
    if (track->pointsReadBack == expected && track->points == expected) return std::nullopt;
    return "it should hold " + Counted(expected, "point", "points") + ", but " +
           std::to_string(track->pointsReadBack) + " can be read back";
}

}  // namespace

// The slices one behind the other, each thinned on its own, as the library saves them.
CTrack LiveRecording::Thinned() const {
    CTrackEx& recording = *m_manager.GetLogTrack();
    CTrack track;
    for (int i = 0; i < recording.GetSliceNum(); ++i) {
        CTrack slice;
        slice.AppendPt(*recording.GetSliceTrace(i));
        slice.SimplifyPt();
        track.AppendPt(slice);
    }
    return track;
}

std::string LiveRecording::NameOfTheTime() const { return kAutomaticName + m_manager.GetUnusedName(); }

std::variant<SavedTrack, LiveRecording::Problem> LiveRecording::Save(const std::string& name) {
    CTrack track = Thinned();
    track.SetName(FreeTrackName(m_manager, m_device, name.empty() ? NameOfTheTime() : name).c_str());
    track.SetColor(m_color);
    track.Calculate(true);
    if (!m_manager.AddTrack(track)) return WhyNotSaved();
    const unsigned long place = m_manager.GetCnt() - 1;  // not by its name: a file that is missing has none
    const auto file = FileOf(m_device, m_manager.GetTrack(place)->GetTrackPath());
    const auto saved = ReadSavedTrack(m_device, file);
    const auto bad = WhyBad(saved, track.GetPtCount());
    if (!bad) {
        m_knownFiles.insert(file);
        if (const auto problem = MarkAsSaved(m_device, *saved))
            m_say("the next run continues this recording: " + *problem);
        return *saved;
    }
    m_manager.DelTrack(place);
    return Utf8Of(file) + ": " + *bad + " (" + WhyNothingIsWritten(file.parent_path()) + ')';
}

LiveRecording::Problem LiveRecording::WhyNotSaved() const {
    bool onCard = false;
    if (!m_manager.GetStoragePlace(onCard)) return "there is too little room in " + Utf8Of(m_device.Root());
    const std::filesystem::path& folder = onCard ? m_device.CardTracks() : m_device.Tracks();
    return "the folder " + Utf8Of(folder) + " does not take it: " + WhyNothingIsWritten(folder);
}

bool LiveRecording::IsSaved() const { return IsMarkedAsSaved(m_device); }

std::optional<LiveRecording::Problem> LiveRecording::Clear() {
    if (const auto problem = RemoveSavedMark(m_device)) return problem;
    m_manager.GetLogTrack()->ClearAllSliceTrace();
    const bool isWritten = m_manager.GetLogTrack()->SaveSliceData();
    m_pointsBefore = Points();
    if (isWritten && PointsInRingFile(m_device) == std::uint64_t{0}) return std::nullopt;
    return Utf8Of(RingFileOf(m_device)) + " cannot be cleared: " + WhyNothingIsWritten(m_device.Recording());
}

// Most fixes need not ask the file.
bool LiveRecording::WouldOverwrite(std::uint64_t points) const {
    if (Points() + points < kCapacity) return false;
    return m_manager.GetLogTrack()->IsNeedSaveAllTmpTrk(static_cast<int>(points));
}

// The points that the library will save of those written. It names the file by the second, and would replace
// one of that name: so it has to be a second in which there is none.
std::optional<std::uint64_t> LiveRecording::PrepareAutomaticSave() const {
    WaitForAFreshName();
    return Thinned().GetPtCount();
}

void LiveRecording::WaitForAFreshName() const {
    std::error_code unreadable;
    const auto exists = [&](const std::filesystem::path& folder) {
        return std::filesystem::exists(folder / PathOf(NameOfTheTime() + ".gpx"), unreadable);
    };
    while (exists(m_device.Tracks()) || exists(m_device.CardTracks()))
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

void LiveRecording::CheckAutomaticSave(std::uint64_t expected) {
    const auto files = TrackFilesOf(m_device);
    auto fresh = NewFiles(m_knownFiles, files);
    m_knownFiles = files;
    std::erase_if(fresh, [](const auto& file) { return !Utf8Of(file.filename()).starts_with(kAutomaticName); });
    if (fresh.empty())
        return Complain("the recording is not saved before its beginning is overwritten: " + WhyNotSaved());
    const auto track = ReadSavedTrack(m_device, *fresh.begin());
    if (const auto bad = WhyBad(track, expected))
        return Complain("the automatic save " + Utf8Of(*fresh.begin()) + " is not whole: " + *bad);
    m_automaticSaves.push_back(*track);
}

}  // namespace host
