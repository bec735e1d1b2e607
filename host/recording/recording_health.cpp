// The health of the live recording's files, and what is left behind in the folders. That of stored tracks:
// host/tracks/track_health.cpp.
#include <algorithm>
#include <charconv>

#include "host/recording/device_health.h"
#include "host/recording/recorder_lock.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// "3, 17, 240 and 12 more".
std::string SlotsOf(const RingImage& ring, RecordState state) {
    constexpr std::size_t kShown = 8;
    std::string text;
    std::size_t count = 0;
    for (const RingRecord& record : ring.records)
        if (record.state == state && ++count <= kShown)
            text += (count == 1 ? "" : ", ") + std::to_string(record.slot);
    return count <= kShown ? text : text + " and " + std::to_string(count - kShown) + " more";
}

// A file that the next start of the recording mends from the note is not lost.
void CheckRing(const RecordingView& files, RecordingHealth& health) {
    const RingImage& ring = files.image;
    const bool isWaiting = files.note == NoteState::Waiting && !files.recorder;
    if (isWaiting)
        health.notes.push_back(
            "the recording was not closed in order; its next start completes the append that is noted");
    else if (files.note == NoteState::Damaged && !files.recorder)
        health.notes.push_back("the note of the last append is not whole; the next start passes over it");
    if (!ring.isConsistent && ring.size != 0)
        (isWaiting ? health.notes : health.problems)
            .push_back("header and size of " + Utf8Of(files.ring) + " do not agree; qtrace salvage reads it");
    if (const std::size_t damaged = ring.Count(RecordState::Damaged); damaged != 0)
        health.problems.push_back(Counted(damaged, "damaged record", "damaged records") + ", in slot " +
                                  SlotsOf(ring, RecordState::Damaged));
}

// "….qtrace-PROCESS-NUMBER.tmp" while that process lives is work in hand.
bool IsTemporary(const std::string& name) {
    constexpr std::string_view kFront = ".qtrace-";
    if (!name.starts_with(kFront) || !name.ends_with(".tmp")) return false;
    int process = 0;
    std::from_chars(name.data() + kFront.size(), name.data() + name.size(), process);
    return !IsAlive(process);
}

bool IsBackup(const std::string& name) { return name.starts_with("TmpTk") && name.ends_with(".bk"); }

void LookInto(const fs::path& folder, std::vector<std::string>& leftovers) {
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(folder, missing)) {
        const std::string name = Utf8Of(entry.path().filename());
        if (IsTemporary(name)) leftovers.push_back(Utf8Of(entry.path()) + " is half written and can go");
        if (IsBackup(name))
            leftovers.push_back(Utf8Of(entry.path()) +
                                " is a damaged recording that was put aside; qtrace salvage reads it");
    }
}

}  // namespace

RecordingHealth CheckRecording(const RecordingView& files) {
    RecordingHealth health;
    if (files.recorder) health.notes.push_back("process " + *files.recorder + " is recording");
    if (!files.exists) return health;
    if (!files.problem.empty())
        health.problems.push_back(Utf8Of(files.ring) + " cannot be read: " + files.problem);
    else
        CheckRing(files, health);
    if (files.hasHeadFile && !files.head) health.problems.push_back("the head file is damaged");
    return health;
}

std::vector<std::string> FindLeftovers(const DeviceFolder& device) {
    std::vector<std::string> leftovers;
    std::vector<fs::path> folders = {device.Recording(), device.Tracks(), device.CardTracks()};
    std::sort(folders.begin(), folders.end());
    folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
    for (const fs::path& folder : folders) LookInto(folder, leftovers);
    std::sort(leftovers.begin(), leftovers.end());
    return leftovers;
}

}  // namespace host
