// The live recording's files as their bytes say, read without the library and without touching them: what a
// recorder that runs is writing can be looked at. Pure functions on bytes. The layout:
// docs/formats/log-file.md. Getting the bytes: host/recording/recording_view.h. Records at other offsets:
// host/recording/salvage.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qtrace.h"

namespace host {

constexpr std::size_t kRecordSize = 48;
constexpr std::size_t kRingHeaderSize = 4;
constexpr std::size_t kRingCapacity = 10000;
constexpr int kSliceGap = 1800;  // [s] from here on a gap in time begins a new slice

// The point in the first 48 bytes. At least 42 are there; of its further data, what is missing is zero.
TckPt PointIn(std::string_view bytes);

// Whether the first 42 bytes end in the check sequence of the first 40.
bool IsCheckGood(std::string_view bytes);

enum class RecordState {
    Good,
    Empty,   // zeros: where the ring came round, as many of its oldest records give way
    Damaged  // the check sequence disagrees
};

struct RingRecord {
    std::size_t slot = 0;
    std::size_t offset = 0;  // in the file
    RecordState state = RecordState::Empty;
    TckPt point{};
};

struct RingImage {
    std::size_t size = 0;  // [bytes]
    unsigned start = 0;
    unsigned count = 0;
    bool isConsistent = false;        // header and size agree: a start of the library takes it as it is
    std::vector<RingRecord> records;  // in track order; as many as the file has whole slots, at most `count`

    std::size_t Count(RecordState state) const;
};

RingImage ReadRingImage(std::string_view bytes);

// The good points sorted by time, as the library lists them, cut at the gaps.
std::vector<std::vector<TckPt>> SlicesOf(std::vector<TckPt> points);

// The head file: 96 bytes.
struct HeadImage {
    std::string name;  // in the library's code page
    bool visible = false;
    std::uint32_t color = 0;  // 0x00BBGGRR
};
std::optional<HeadImage> ReadHeadImage(std::string_view bytes);  // nothing when it is no head file

// The note of the append in hand.
enum class NoteState {
    None,     // nothing is noted
    Waiting,  // whole: the next start of the recording completes the append
    Damaged   // cut or changed: the next start passes over it
};
NoteState StateOfNote(std::string_view bytes);

}  // namespace host
