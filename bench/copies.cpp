// Works whose limit is moving the same bytes: key points, the record stream, and fixes through each recording
// strategy.
//   bench_copies
#include <cstring>
#include <memory>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"
#include "record/recording_strategy.h"

namespace {

constexpr const char* kLimit = "limit: copying the same bytes";

void CopyBytes(const PointList& points, PointList& to) {
    std::memcpy(to.data(), points.data(), points.size() * sizeof(TckPt));
}

CTrack TrackOf(const PointList& points) {
    CTrack track;
    for (const TckPt& point : points) track.AppendPt(point, false);
    track.Calculate(true);
    return track;
}

void MeasureKeyPoints(std::size_t count) {
    const PointList points = Drive(count);
    CTrack track = TrackOf(points);
    PointList keys;
    PointList copy(count);
    SideBySide works("key points", count);
    works.Add("ours", [&] { track.GetKeyPtList(keys); });
    works.Add(kLimit, [&] { CopyBytes(points, copy); });
    works.Measure();
}

void MeasureRecordStream(std::size_t count) {
    const PointList points = Drive(count);
    CTrack track = TrackOf(points);
    PointList copy(count);
    const BenchDevice device;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        std::fopen(device.HostPath("record-stream").c_str(), "wb+"), &std::fclose);
    SideBySide saving("record stream, save", count);
    saving.Add("ours", [&] { track.Save(static_cast<void*>(file.get())); });
    saving.Add(kLimit, [&] { CopyBytes(points, copy); });
    saving.Measure();
    SideBySide loading("record stream, load", count);
    loading.Add(
        "ours", [&] { track.Load(static_cast<void*>(file.get())); }, [&] { std::rewind(file.get()); });
    loading.Add(kLimit, [&] { CopyBytes(points, copy); });
    loading.Measure();
}

// Batches are taken and thrown away, so the ring's cost is not in it.
void MeasureStrategy(const std::string& name, ITrackSaveStragy& strategy, const PointList& points) {
    PointList copy(points.size());
    PointList batch;
    std::int32_t lap = 0;  // each run goes on where the last one ended: fixes of the past are ignored
    SideBySide works("fixes through the strategy " + name, points.size());
    works.Add("ours", [&] {
        const std::int32_t shift = lap++ * static_cast<std::int32_t>(points.size());
        for (TckPt fix : points) {
            fix.lTime += shift;
            if (strategy.AddFixPt(fix) != 2) continue;
            strategy.GetSavePtLst(batch);
            strategy.ClearSavePtLst();
        }
    });
    works.Add(kLimit, [&] { CopyBytes(points, copy); });
    works.Measure();
}

}  // namespace

int main() {
    for (const std::size_t size : {10'000, 100'000, 1'000'000}) MeasureKeyPoints(size);
    for (const std::size_t size : {100, 1000, 10'000}) MeasureRecordStream(size);
    for (const std::size_t size : {10'000, 100'000, 1'000'000}) {
        const PointList drive = Drive(size);
        CTrackTimeStragy byTime(1);
        CTrackDistStragy byDistance(3.0);
        CTrackAutoStragy automatic(3.0, 1);
        MeasureStrategy("by time", byTime, drive);
        MeasureStrategy("by distance", byDistance, drive);
        MeasureStrategy("automatic", automatic, drive);
    }
    return 0;
}
