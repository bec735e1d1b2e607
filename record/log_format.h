// Log.dat, the ring file that carries the live recording across a power loss: its bytes, for reader and writer.
// The same in prose, with an example: docs/formats/log-file.md. Point record: track/point.h. Moving these bytes
// between memory and a stream: record/ring_file.h. What an append writes: record/ring_plan.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "track/point.h"

namespace log_file {

// Bytes 0 and 1: slot of the oldest record once the ring has wrapped, else 0. Bytes 2 and 3: number of records.
// Both little-endian, on every machine.
struct RingHeader {
    std::uint16_t start = 0;
    std::uint16_t count = 0;
};
inline constexpr std::size_t kHeaderSize = 4;

// The slots follow. Each holds a point as it lies in memory, so a file belongs to machines of one byte order;
// all that we build for are little-endian.
inline constexpr long kSlot0Offset = 4;
inline constexpr std::size_t kRecordSize = 48;
static_assert(sizeof(TckPt) == kRecordSize);

// Within a record: bytes 0 to 39 are checked, bytes 40 and 41 hold their check sequence, little-endian
// (record/fcs16.h).
inline constexpr std::size_t kCheckedSize = 40;
inline constexpr std::size_t kCheckSize = 2;
static_assert(offsetof(TckPt, reserved) == kCheckedSize);

// KEPT: no file of more records counts as consistent, whatever the recording's own capacity. Files in the field
// were written under this bound. Pinned by LogTrackOpening.ConsistencyBound_IsTenThousandWhateverTheCapacity.
inline constexpr int kConsistencyBound = 10000;

inline constexpr char kPointFileName[] = "Log.dat";
inline constexpr char kHeadFileName[] = "LogHd.dat";

constexpr std::int64_t FileSizeOf(std::size_t count) {
    return kSlot0Offset + static_cast<std::int64_t>(kRecordSize * count);
}

}  // namespace log_file
