#include "host/tracks/new_track.h"

#include <algorithm>
#include <iostream>
#include <system_error>

#include "host/program.h"
#include "host/text/display_width.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/named_tracks.h"
#include "host/tracks/storable_altitude.h"
#include "host/tracks/track_name.h"

namespace fs = std::filesystem;

namespace host {
namespace {

// The first point that would be read back with the time of the one before it; the number of points when each
// will keep its own.
std::size_t FirstThatTakesATime(const Points& points) {
    std::size_t at = 1;
    while (at < points.size() && (points[at].lTime != 0 || points[at - 1].lTime == 0)) ++at;
    return std::min(at, points.size());
}

void TellOfGivenAltitudes(std::size_t points) {
    if (points == 1)
        std::cerr << "note: 1 point knows no altitude: it is stored with that of the point before it\n";
    else if (points != 0)
        std::cerr << "note: " << points
                  << " points know no altitude: they are stored with that of the point before them\n";
}

}  // namespace

std::optional<std::string> NewTrackName(const Library& library, const std::string& command,
                                        const std::string& wanted) {
    const TrackName name = MakeTrackName(wanted);
    const std::string shown = Printable(ToUtf8(name.text));
    if (name.text.empty()) {
        Fail(command, "a track needs a name");
        return std::nullopt;
    }
    if (library.FreeName(name.text) != name.text) {
        Fail(command, "there is a track or a file named " + shown + " already");
        return std::nullopt;
    }
    if (name.wasChanged) std::cerr << "the name was changed to " << shown << '\n';
    return name.text;
}

std::optional<std::string> StorePoints(const Library& library, const Points& points, const std::string& name,
                                       const StoredTrack& like) {
    if (const std::size_t at = FirstThatTakesATime(points); at < points.size())
        return "point " + std::to_string(at + 1) +
               " knows no time and stands behind one that does: a stored track would give it that time";
    CTrack track;
    track.SetName(name.c_str());
    track.SetColor(like.color);
    track.SetVisible(like.visible);
    Points storable = points;
    TellOfGivenAltitudes(FillUnknownAltitudes(storable));
    for (const TckPt& point : storable) track.AppendPt(point, false);
    if (const auto problem = library.Store(track)) return problem;
    CTrackProxy* stored = library.Find(name);
    const auto readBack = stored == nullptr ? std::nullopt : ReadStoredTrack(stored->GetTrackPath());
    if (readBack && readBack->name == name && SamePoints(readBack->points, storable)) return std::nullopt;
    if (stored != nullptr) DeleteTrack(library, *stored);
    return "what was written for " + ToUtf8(name) + " does not read back as it should";
}

std::optional<std::string> DeleteTrack(const Library& library, CTrackProxy& track) {
    const fs::path file = library.FileOf(track);
    const std::vector<CTrackProxy*> tracks = library.Tracks();
    const auto index = std::find(tracks.begin(), tracks.end(), &track) - tracks.begin();
    library.Manager().DelTrack(static_cast<unsigned long>(index));
    std::error_code unknown, problem;
    if (!fs::exists(fs::symlink_status(file, unknown)) || fs::remove(file, problem)) return std::nullopt;
    return Utf8Of(file) + " could not be deleted: " + problem.message();
}

}  // namespace host
