#include "host/tracks/named_tracks.h"

#include <algorithm>
#include <set>
#include <system_error>

#include "host/program.h"
#include "host/text/display_width.h"
#include "host/text/extension.h"
#include "host/text/file_bytes.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

std::string WhyUnreadable(const fs::path& file) {
    std::error_code special;
    if (!fs::is_regular_file(file, special))
        return "it is no file";  // opening a pipe would wait for its other end
    if (const FileReader opened(Utf8Of(file)); !opened.Problem().empty()) return opened.Problem();
    std::error_code unknown;
    return fs::file_size(file, unknown) == 0 ? "it is empty" : "it holds no track that can be read";
}

void AddUnlisted(const fs::path& folder, const std::set<fs::path>& listed, std::vector<UnreadableFile>& files) {
    std::error_code problem;
    for (const auto& entry : fs::directory_iterator(folder, problem)) {
        std::error_code unknown;
        if (!IsTrackFile(entry.path()) || entry.is_directory(unknown) || listed.contains(entry.path()))
            continue;
        files.push_back({entry.path(), WhyUnreadable(entry.path())});
    }
}

}  // namespace

CTrackProxy* TrackNamed(const Library& library, const std::string& name) {
    return library.Find(FromUtf8(name));
}

int FailForName(const std::string& command, const std::string& name) {
    return Fail(command, "no track named " + Printable(name));
}

std::optional<std::vector<CTrackProxy*>> TracksNamed(const Library& library, const std::string& command,
                                                     const std::vector<std::string>& names) {
    std::vector<CTrackProxy*> tracks;
    bool all = true;
    for (const std::string& name : names) {
        CTrackProxy* track = TrackNamed(library, name);
        if (track == nullptr) {
            FailForName(command, name);
            all = false;
        } else if (std::find(tracks.begin(), tracks.end(), track) == tracks.end()) {
            tracks.push_back(track);
        }
    }
    return all ? std::optional(tracks) : std::nullopt;
}

std::string ShownName(const std::string& name) { return Printable(ToUtf8(name)); }
std::string ShownName(CTrackProxy& track) { return ShownName(track.GetName()); }

std::vector<UnreadableFile> UnreadableFiles(const Library& library, const HostSettings& settings) {
    std::set<fs::path> listed;
    for (CTrackProxy* track : library.Tracks()) listed.insert(library.FileOf(*track));
    std::vector<UnreadableFile> files;
    AddUnlisted(library.Device().Tracks(), listed, files);
    if (settings.card) AddUnlisted(library.Device().CardTracks(), listed, files);
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.file < b.file; });
    return files;
}

}  // namespace host
