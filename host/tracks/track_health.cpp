// The health of stored tracks. That of the recording and of the folders: host/recording/recording_health.cpp.
#include <algorithm>
#include <cmath>
#include <map>

#include "host/recording/device_health.h"
#include "host/text/extension.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kImport = "qtrace import makes it a track of the library";

std::vector<fs::path> TrackFilesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(folder, missing))
        if (std::error_code special; IsTrackFile(entry.path()) && entry.is_regular_file(special))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// What the document itself shows.
void CheckDocument(TrackHealth& health) {
    FileReader reader(Utf8Of(health.file));
    std::uint64_t badPositions = 0, badTimes = 0;
    const GpxOutcome outcome = ReadGpx(reader, [&](const GpxTrack& track) {
        if (health.points == 0) health.points = track.points.size();
        badPositions += track.badPositions;
        badTimes += track.badTimes;
    });
    const auto add = [&](const std::string& problem) { health.problems.push_back(problem); };
    if (!outcome.xml.problem.empty())
        add((outcome.xml.line == 0 ? "" : "damaged in line " + std::to_string(outcome.xml.line) + ": ") +
            outcome.xml.problem);
    if (badPositions != 0) add(Counted(badPositions, "point", "points") + " without a valid position");
    if (badTimes != 0) add(Counted(badTimes, "time", "times") + " unreadable or out of range");
}

// Other programs state no length and no times for a track, and no number of points or another number.
bool HasHeaderOfOurs(const StatedTrack& stated, const Points& points) {
    return stated.points == points.size() || stated.length != 0 || stated.start != 0 || stated.end != 0;
}

void CheckListed(CTrackProxy& track, TrackHealth& health) {
    Points points;
    track.GetPtList(points);
    health.name = ToUtf8(track.GetName());
    if (points.size() != health.points)
        health.problems.push_back("the library reads " + Counted(points.size(), "point", "points") + ", not " +
                                  std::to_string(health.points));
    const StatedTrack stated{track.GetPtCount(), track.GetStartTime(), track.GetEndTime(), track.GetLength()};
    if (!HasHeaderOfOurs(stated, points)) {
        health.notes.push_back(std::string("it is listed, and has no header of ours; ") + kImport);
        return;
    }
    const auto disagreements = CompareWithPoints(stated, points);
    health.problems.insert(health.problems.end(), disagreements.begin(), disagreements.end());
}

void CheckUnlisted(TrackHealth& health) {
    if (!health.problems.empty())
        health.problems.push_back("the library does not list it");
    else if (health.points == 0)
        health.notes.push_back("it is not listed: its first track has no points");
    else
        health.notes.push_back(std::string("it is not listed: it has no header of ours; ") + kImport);
}

// By the whole path: the library finds files by their names alone, and in any letter case.
using Listed = std::map<fs::path, CTrackProxy*>;

Listed ListedFiles(const Library& library) {
    Listed listed;
    for (CTrackProxy* track : library.Tracks()) listed.emplace(library.FileOf(*track), track);
    return listed;
}

TrackHealth CheckTrack(const Listed& listed, const fs::path& file) {
    TrackHealth health;
    health.file = file;
    CheckDocument(health);
    const auto track = listed.find(file);
    if (track != listed.end())
        CheckListed(*track->second, health);
    else
        CheckUnlisted(health);
    return health;
}

// A reversed track has times that only go back; anything in between is out of order.
bool IsOutOfOrder(const Points& points) {
    bool rises = false, falls = false;
    for (std::size_t i = 1; i < points.size(); ++i) {
        rises = rises || points[i].lTime > points[i - 1].lTime;
        falls = falls || points[i].lTime < points[i - 1].lTime;
    }
    return rises && falls;
}

// The length was measured before the positions were rounded to six decimals, which moves a point by 0.08 m at
// most.
double LengthTolerance(std::size_t points, double length) {
    return 0.16 * static_cast<double>(points) + 0.001 * length;
}

}  // namespace

std::vector<std::string> CompareWithPoints(const StatedTrack& stated, const Points& points) {
    std::vector<std::string> problems;
    if (stated.points != points.size())
        problems.push_back("its header states " + Counted(stated.points, "point", "points") +
                           ", but it holds " + std::to_string(points.size()));
    if (points.empty()) return problems;
    const auto [start, end] = std::minmax(points.front().lTime, points.back().lTime);
    if (stated.start != start || stated.end != end)
        problems.push_back("its header states " + UtcText(stated.start) + " to " + UtcText(stated.end) +
                           ", but its points are of " + UtcText(start) + " to " + UtcText(end));
    const double length = AidCalLength(points);
    if (!(std::fabs(stated.length - length) <= LengthTolerance(points.size(), length)))
        problems.push_back("its header states a length of " + DistanceText(stated.length) +
                           ", but its points make " + DistanceText(length));
    if (IsOutOfOrder(points)) problems.push_back("its times go back");
    return problems;
}

std::vector<TrackHealth> CheckTracks(const Library& library) {
    std::vector<fs::path> files = TrackFilesIn(library.Device().Tracks());
    const std::vector<fs::path> onCard = TrackFilesIn(library.Device().CardTracks());
    if (library.Device().CardTracks() != library.Device().Tracks() &&
        library.Manager().GetTrackMangSet()->GetbHasSdCard())
        files.insert(files.end(), onCard.begin(), onCard.end());
    const Listed listed = ListedFiles(library);
    std::vector<TrackHealth> tracks;
    for (const fs::path& file : files) tracks.push_back(CheckTrack(listed, file));
    return tracks;
}

}  // namespace host
