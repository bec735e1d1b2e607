#include "host/record_fixes.h"

#include "host/progress.h"

namespace host {

RecordedInput RecordFixes(Input& input, LiveRecording& recording, StopSignals& stop) {
    RecordedInput result;
    Progress progress;
    std::uint64_t fixes = 0;
    NmeaReader reader([&](const TckPt& fix) {
        recording.Offer(fix);
        progress.Show(
            {input.BytesRead(), input.Size(), ++fixes, recording.PointsAdded(), recording.NewestTime()});
    });
    std::string_view bytes;
    while ((result.end = input.Read(stop, bytes)) == Input::Got::Bytes) reader.Push(bytes);
    reader.Finish();
    result.nmea = reader.Counts();
    return result;
}

}  // namespace host
