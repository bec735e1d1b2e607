#include "host/summary.h"

#include <iomanip>
#include <iostream>

#include "host/text.h"

namespace host {
namespace {

void PrintLine(const std::string& label, const std::string& text) {
    std::cout << std::left << std::setw(12) << label << text << '\n';
}

std::string ModeText(const RecordSettings& settings) {
    const std::string metres = std::to_string(settings.distance) + " m",
                      seconds = std::to_string(settings.time) + " s";
    switch (settings.mode) {
        case RecTrackByDist:
            return "every " + metres;
        case RecTrackByTime:
            return "every " + seconds;
        default:
            return "every " + metres + " or " + seconds;
    }
}

}  // namespace

std::string RefusedByReason(const NmeaCounts& counts) {
    std::string text;
    for (std::size_t i = 0; i < kRefusals; ++i) {
        if (counts.refused[i] == 0) continue;
        if (!text.empty()) text += ", ";
        text += std::to_string(counts.refused[i]) + ' ' + NameOf(static_cast<Refusal>(i));
    }
    return text;
}

void PrintInput(const std::string& name, const NmeaCounts& counts) {
    PrintLine("Input", name);
    PrintLine("  read", Counted(counts.fixes, "fix", "fixes") + " from " +
                            Counted(counts.sentences, "sentence", "sentences"));
    if (counts.Refused() != 0) PrintLine("  refused", RefusedByReason(counts));
    if (counts.otherLines != 0)
        PrintLine("  skipped",
                  Counted(counts.otherLines, "line that is no sentence", "lines that are no sentence"));
}

void PrintRecording(const LiveRecording& recording, const RecordSettings& settings) {
    PrintLine("Recorded", Counted(recording.PointsAdded(), "point", "points") + ", " + ModeText(settings));
    PrintLine("  in all", Counted(recording.Points(), "point", "points") + " in " +
                              Counted(static_cast<std::uint64_t>(recording.Slices()), "slice", "slices"));
    PrintLine("  ring", Decimals(100 * recording.Fill(), 1) + " % full");
}

void PrintSavedTrack(const SavedTrack& track) {
    PrintLine("Saved", track.file.string());
    PrintLine("  name", track.name);
    PrintLine("  points", std::to_string(track.pointsReadBack));
    PrintLine("  length", DistanceText(track.length));
    PrintLine("  start", UtcText(track.start));
    PrintLine("  end", UtcText(track.end));
}

}  // namespace host
