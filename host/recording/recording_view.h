// The live recording's files in a device folder, looked at from outside: a recorder that runs is not disturbed,
// and nothing is made or changed. What their bytes say: host/recording/ring_image.h.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/recording/ring_image.h"
#include "host/settings/device_folder.h"

namespace host {

// The process that records in the device folder now, as it noted itself; nothing when there is none.
std::optional<std::string> RunningRecorder(const DeviceFolder& device);

struct RecordingView {
    std::filesystem::path ring;  // of the point file
    bool exists = false;
    std::string problem;  // why the point file cannot be read
    RingImage image;
    std::optional<HeadImage> head;  // nothing when it is missing or none
    bool hasHeadFile = false;
    NoteState note = NoteState::None;
    bool isSaved = false;  // all of it is in a track
    std::optional<std::string> recorder;
};

// A file that is caught between two writes of an append is read again, for at most a second.
RecordingView ViewRecording(const DeviceFolder& device);

}  // namespace host
