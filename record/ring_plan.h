// What is to be done with the ring file, decided without touching it, so that tests sweep every small ring.
// Carrying it out: record/ring_file.h. The bytes: record/log_format.h. Inner to the library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "record/log_format.h"

namespace log_file {

// One piece of the file, written in one go: points of the batch, then records of zeros.
struct RingBlock {
    std::size_t slot = 0;        // where it begins
    std::size_t firstPoint = 0;  // index in the batch
    std::size_t points = 0;
    std::size_t zeros = 0;
};

// What an append writes: the header, then the blocks in order. A block may be of no records at all.
struct RingWrite {
    RingHeader header;
    std::array<RingBlock, 2> blocks{};
    std::size_t blockCount = 0;
    std::size_t recorded = 0;    // how many points of the batch, from its first, the recording gains
    bool growsAndTurns = false;  // the first block makes the file longer, the second goes over old records
};

// How a batch of `batchSize` points goes into a ring of `capacity` slots whose header is `now`;
// 0 < batchSize < capacity. `overwrite`: the oldest points give way, otherwise what does not fit is dropped.
// nullopt: refused, because the ring is full and must not overwrite, or because the header is none of a ring of
// this capacity (start above count, or count above capacity).
std::optional<RingWrite> PlanAppend(RingHeader now, std::size_t batchSize, std::size_t capacity,
                                    bool overwrite);

// Whether a file of `fileSize` bytes [0 and up] with this header can be read as a ring.
bool IsConsistent(RingHeader header, std::int64_t fileSize);

// Whether `newCount` more points would overwrite the current trip's first point, which lies in slot
// `tripStart`.
bool WouldOverwriteTripStart(RingHeader now, std::int64_t newCount, std::int64_t capacity,
                             std::int64_t tripStart);

}  // namespace log_file
