// A GPX file by strangers, read in all three ways; what was read as a whole track is written and read again.
#include <cstring>
#include <vector>

#include "fuzz/device_in_memory.h"
#include "gpx/gpx.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

struct Track {
    Points points;
    GpxTrackInfo info{};
    Track() { info.points = &points; }
};

void WriteAndReadAgain(Track& track) {
    GpxMetadata metadata{};
    CGPXTransmit writer;
    writer.SetMetadata(&metadata);
    writer.SetTrackInfo(&track.info);
    fuzz::Require(writer.ExportGpx(L"\\Track\\again.gpx"));
    Track again;
    fuzz::Require(CGPXTransmit().ImportGpx(L"\\Track\\again.gpx", &again.info));
    fuzz::Require(again.points.size() == track.points.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Device().Write("Track/input.gpx", {reinterpret_cast<const char*>(data), size});
    Track whole, head, points;
    const bool isRead = CGPXTransmit().ImportGpx(L"\\Track\\input.gpx", &whole.info);
    CGPXTransmit().ImportGpxHead(L"\\Track\\input.gpx", &head.info);
    CGPXTransmit().ImportGpxPoints(L"\\Track\\input.gpx", &points.info);
    if (isRead) fuzz::Require(points.points.size() <= whole.points.size());
    if (isRead) WriteAndReadAgain(whole);
    return 0;
}
