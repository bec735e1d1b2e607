#include "host/recording/saving.h"

#include <iostream>

#include "host/program.h"
#include "host/recording/summary.h"
#include "host/text/display_width.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/track_name.h"

namespace host {

std::optional<std::string> NameToSave(const std::string& command, const std::string& text,
                                      const HostSettings& settings) {
    SetAnsiCodePage(settings.codePage);
    const TrackName name = MakeTrackName(text);
    if (name.text.empty() && !text.empty()) {
        Fail(command, "nothing of the name " + text + " is fit for a track");
        return std::nullopt;
    }
    if (name.wasChanged)
        std::cerr << "qtrace " + command + ": the track will be named " + Printable(ToUtf8(name.text)) +
                         ": names have at most 32 bytes, and fit for a file\n";
    return name.text;
}

int SaveAndPrint(const std::string& command, const DeviceFolder& device, LiveRecording& recording,
                 const std::string& name) {
    const auto saved = recording.Save(name);
    if (const auto* track = std::get_if<SavedTrack>(&saved)) {
        PrintSavedTrack(*track);
        return kDone;
    }
    const std::string kept =
        recording.Check() ? "" : "; the recording itself is kept in " + Utf8Of(device.Recording());
    return Fail(command, "not saved: " + std::get<std::string>(saved) + kept);
}

}  // namespace host
