#include "record/ring_plan.h"

namespace {

using log_file::RingBlock;
using log_file::RingHeader;
using log_file::RingWrite;

RingHeader Header(std::size_t start, std::size_t count) {
    return {static_cast<std::uint16_t>(start), static_cast<std::uint16_t>(count)};
}

RingWrite HeaderOnly(RingHeader header) { return {header, {}, 0, 0}; }

// The first `points` points of the batch, from `slot` on.
RingWrite OneBlock(RingHeader header, std::size_t slot, std::size_t points) {
    return {header, {RingBlock{slot, 0, points, 0}}, 1, points};
}

// The batch up to the last slot, then the rest of it from slot 0 on.
// KEPT: the second block is as long as the batch, so zeros follow the rest: over the oldest points, and in a
// batch longer than the way it went, over points just written. Files in the field have these gaps; their check
// fails, so they are read as points without position or time. Pinned by
// LogTrackAppending.BatchAcrossTheEnd_ZeroesTheTail.
RingWrite AcrossTheEnd(RingHeader header, std::size_t slot, std::size_t batchSize, std::size_t capacity) {
    const std::size_t before = capacity - slot;
    const RingBlock atTheEnd{slot, 0, before, 0};
    const RingBlock fromTheFront{0, before, batchSize - before, before};
    return {header, {atTheEnd, fromTheFront}, 2, batchSize};
}

// KEPT: a wrapped ring that must not overwrite still has its start moved, and the batch counts as accepted
// without being written. Such a ring is full, so it is refused before, but for a ring that was made with a
// smaller capacity. Pinned by LogTrackAppending.WrappedRingThatIsNotFull_MovesItsStartOnly.
RingWrite IntoWrapped(RingHeader now, std::size_t batchSize, std::size_t capacity, bool overwrite) {
    const std::size_t end = std::size_t{now.start} + batchSize;
    const bool reachesEnd = end >= capacity;
    const RingHeader header = Header(reachesEnd ? end - capacity : end, capacity);
    if (!overwrite) return HeaderOnly(header);
    if (!reachesEnd) return OneBlock(header, now.start, batchSize);
    return AcrossTheEnd(header, now.start, batchSize, capacity);
}

RingWrite IntoUnwrapped(std::size_t count, std::size_t batchSize, std::size_t capacity, bool overwrite) {
    const std::size_t end = count + batchSize;
    if (end <= capacity) return OneBlock(Header(0, end), count, batchSize);
    if (!overwrite) return OneBlock(Header(0, capacity), count, capacity - count);
    RingWrite write = AcrossTheEnd(Header(end - capacity, capacity), count, batchSize, capacity);
    write.growsAndTurns = count < capacity;
    return write;
}

}  // namespace

std::optional<RingWrite> log_file::PlanAppend(RingHeader now, std::size_t batchSize, std::size_t capacity,
                                              bool overwrite) {
    if (now.start > now.count || now.count > capacity) return std::nullopt;
    if (now.count == capacity && !overwrite) return std::nullopt;
    if (now.start != 0) return IntoWrapped(now, batchSize, capacity, overwrite);
    return IntoUnwrapped(now.count, batchSize, capacity, overwrite);
}

bool log_file::IsConsistent(RingHeader header, std::int64_t fileSize) {
    return header.count >= header.start && header.count <= kConsistencyBound &&
           fileSize == FileSizeOf(header.count);
}

bool log_file::WouldOverwriteTripStart(RingHeader now, std::int64_t newCount, std::int64_t capacity,
                                       std::int64_t tripStart) {
    if (now.count < capacity) return now.count + newCount >= capacity + tripStart;
    const std::int64_t end = now.start + newCount;
    if (now.start < tripStart && tripStart <= end) return true;
    return end >= capacity && end - capacity >= tripStart;
}
