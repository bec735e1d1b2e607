#include "host/recording/recording_view.h"

#include <charconv>
#include <chrono>
#include <thread>

#include "host/recording/recorder_lock.h"
#include "host/recording/saved_mark.h"
#include "host/text/file_bytes.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

constexpr std::uint64_t kLargest = 16'000'000;  // a ring has at most 65535 records of 48 bytes

int NumberIn(const std::string& process) {
    int id = 0;
    std::from_chars(process.data(), process.data() + process.size(), id);
    return id;
}

void ReadRing(RecordingView& files) {
    const FileBytes ring = ReadWholeFile(Utf8Of(files.ring), kLargest);
    files.problem = ring.problem;
    files.image = ReadRingImage(ring.bytes);
}

}  // namespace

// The lock is tried only while the process that noted itself is alive, so that a recorder which starts in this
// moment does not find it taken.
std::optional<std::string> RunningRecorder(const DeviceFolder& device) {
    const std::string file = Utf8Of(device.Recording() / "recorder.lock");
    const std::string note = ReadWholeFile(file, 100).bytes;
    const std::string process = note.substr(0, note.find('\n'));
    return IsAlive(NumberIn(process)) && IsLocked(file) ? std::optional(process) : std::nullopt;
}

RecordingView ViewRecording(const DeviceFolder& device) {
    RecordingView files;
    std::error_code unreadable;
    files.ring = device.Recording() / "Log.dat";
    files.exists = std::filesystem::exists(files.ring, unreadable);
    files.recorder = RunningRecorder(device);
    if (files.exists) ReadRing(files);
    for (int attempt = 0; files.recorder && !files.image.isConsistent && attempt < 10; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        ReadRing(files);
    }
    const FileBytes head = ReadWholeFile(Utf8Of(device.Recording() / "LogHd.dat"), 1000);
    files.hasHeadFile = head.problem.empty();
    files.head = ReadHeadImage(head.bytes);
    files.isSaved = IsMarkedAsSaved(device);
    files.note = StateOfNote(ReadWholeFile(Utf8Of(device.Recording() / "Log.dat.redo"), kLargest).bytes);
    return files;
}

}  // namespace host
