#include "host/recording/summary.h"

#include <iomanip>
#include <iostream>

#include "host/text/display_width.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

void PrintLine(const std::string& label, const std::string& text) {
    std::cout << std::left << std::setw(12) << label << Printable(text) << '\n';
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

void PrintGate(const GateCounts& counts) {
    const std::string refused = RefusedByReason(counts);
    PrintLine("  gate", refused.empty() ? "refused nothing" : "refused " + refused);
    if (counts.mended != 0)
        PrintLine("  mended", Counted(counts.mended, "time", "times") + " by whole eras of 1024 GPS weeks");
    if (counts.accepted != 0)
        PrintLine("  accepted",
                  Counted(counts.accepted, "fix", "fixes") + " that agreed with several refused ones");
}

}  // namespace

void PrintInput(const FixSource& source, const std::optional<GateCounts>& gate) {
    const SourceCounts counts = source.Counts();
    PrintLine("Input", source.Name());
    PrintLine("  read", Counted(counts.fixes, "fix", "fixes") + " from " + counts.from);
    if (!counts.refused.empty()) PrintLine("  refused", counts.refused);
    if (counts.otherLines != 0)
        PrintLine("  skipped",
                  Counted(counts.otherLines, "line that is no sentence", "lines that are no sentence"));
    if (gate) PrintGate(*gate);
}

void PrintRecording(const LiveRecording& recording, const RecordSettings& settings) {
    PrintLine("Recorded", Counted(recording.PointsAdded(), "point", "points") + ", " + ModeText(settings));
    PrintLine("  in all", Counted(recording.Points(), "point", "points") + " in " +
                              Counted(static_cast<std::uint64_t>(recording.Slices()), "slice", "slices"));
    PrintLine("  ring", Decimals(100 * recording.Fill(), 1) + " % full");
    if (const auto behind = recording.Behind())
        PrintLine("  behind", "the newest fix by " + std::to_string(behind->seconds) + " s, " +
                                  DistanceText(behind->metres));
}

void PrintSavedTrack(const SavedTrack& track) {
    PrintLine("Saved", Utf8Of(track.file));
    PrintLine("  name", ToUtf8(track.name));
    PrintLine("  points", std::to_string(track.pointsReadBack));
    PrintLine("  length", DistanceText(track.length));
    PrintLine("  start", UtcText(track.start));
    PrintLine("  end", UtcText(track.end));
}

}  // namespace host
