// An NMEA stream by any receiver: read in one piece and byte by byte it gives the same fixes.
#include <cmath>
#include <vector>

#include "fuzz/device_in_memory.h"
#include "host/source/nmea_reader.h"

namespace {

struct Reading {
    std::vector<TckPt> fixes;
    host::NmeaCounts counts;
};

Reading Read(const std::string& bytes, std::size_t piece) {
    Reading reading;
    host::NmeaReader reader([&](const TckPt& fix) { reading.fixes.push_back(fix); });
    for (std::size_t i = 0; i < bytes.size(); i += piece) reader.Push(std::string_view(bytes).substr(i, piece));
    reader.Finish();
    reading.counts = reader.Counts();
    return reading;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const Reading whole = Read(bytes, bytes.size() + 1), single = Read(bytes, 1);
    fuzz::Require(whole.fixes.size() == single.fixes.size() && whole.counts.fixes == whole.fixes.size());
    fuzz::Require(whole.counts.refused == single.counts.refused);
    for (const TckPt& fix : whole.fixes)
        fuzz::Require(std::fabs(fix.dLatitude) <= 90 && std::fabs(fix.dLongitude) <= 180 && fix.dSpeed >= 0);
    return 0;
}
