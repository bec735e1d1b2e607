#include "host/recording/ring_image.h"

#include <algorithm>
#include <array>
#include <bit>

namespace host {
namespace {

constexpr std::size_t kCheckedSize = 40;
constexpr std::size_t kHeadSize = 96;
constexpr std::string_view kHeadText = "Qarvolent Trace H1.0";

// An unsigned number, little-endian.
template <typename Number>
Number NumberAt(std::string_view bytes, std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return static_cast<Number>(value);
}

double DoubleAt(std::string_view bytes, std::size_t offset) {
    return std::bit_cast<double>(NumberAt<std::uint64_t>(bytes, offset));
}

// A table for a checksum with the least significant bit first.
template <typename Word>
constexpr std::array<Word, 256> ChecksumTable(Word polynomial) {
    std::array<Word, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        Word word = static_cast<Word>(byte);
        for (int bit = 0; bit < 8; ++bit)
            word = static_cast<Word>((word >> 1) ^ ((word & 1) != 0 ? polynomial : 0));
        table[byte] = word;
    }
    return table;
}

template <typename Word, Word kPolynomial>
Word Checksum(std::string_view bytes) {
    static constexpr std::array<Word, 256> kTable = ChecksumTable<Word>(kPolynomial);
    Word sum = static_cast<Word>(~Word{0});
    for (const char c : bytes)
        sum = static_cast<Word>((sum >> 8) ^ kTable[(sum ^ static_cast<unsigned char>(c)) & 0xff]);
    return static_cast<Word>(~sum);
}

RingRecord RecordAt(std::string_view file, std::size_t slot) {
    RingRecord record;
    record.slot = slot;
    record.offset = kRingHeaderSize + kRecordSize * slot;
    const std::string_view bytes = file.substr(record.offset, kRecordSize);
    record.point = PointIn(bytes);
    if (IsCheckGood(bytes))
        record.state = RecordState::Good;
    else if (bytes.find_first_not_of('\0') != std::string_view::npos)
        record.state = RecordState::Damaged;
    return record;
}

}  // namespace

TckPt PointIn(std::string_view bytes) {
    TckPt point{};
    point.dLatitude = DoubleAt(bytes, 0);
    point.dLongitude = DoubleAt(bytes, 8);
    point.dAltitude = DoubleAt(bytes, 16);
    point.dSpeed = DoubleAt(bytes, 24);
    point.lTime = static_cast<std::int32_t>(NumberAt<std::uint32_t>(bytes, 32));
    point.fCourse = std::bit_cast<float>(NumberAt<std::uint32_t>(bytes, 36));
    bytes.substr(kCheckedSize).copy(reinterpret_cast<char*>(point.reserved), sizeof point.reserved);
    return point;
}

// Source: RFC 1662, appendix C.2.
bool IsCheckGood(std::string_view bytes) {
    const auto check = Checksum<std::uint16_t, 0x8408>(bytes.substr(0, kCheckedSize));
    return check == NumberAt<std::uint16_t>(bytes, kCheckedSize);
}

std::size_t RingImage::Count(RecordState state) const {
    return static_cast<std::size_t>(std::count_if(
        records.begin(), records.end(), [state](const RingRecord& record) { return record.state == state; }));
}

RingImage ReadRingImage(std::string_view bytes) {
    RingImage ring;
    ring.size = bytes.size();
    if (bytes.size() < kRingHeaderSize) return ring;
    ring.start = NumberAt<std::uint16_t>(bytes, 0);
    ring.count = NumberAt<std::uint16_t>(bytes, 2);
    ring.isConsistent = bytes.size() == kRingHeaderSize + kRecordSize * ring.count &&
                        ring.start <= ring.count && ring.count <= kRingCapacity;
    const std::size_t slots = std::min<std::size_t>(ring.count, (bytes.size() - kRingHeaderSize) / kRecordSize);
    for (std::size_t slot = 0; slot < slots; ++slot) ring.records.push_back(RecordAt(bytes, slot));
    if (ring.start < slots)
        std::rotate(ring.records.begin(), ring.records.begin() + ring.start, ring.records.end());
    return ring;
}

std::vector<std::vector<TckPt>> SlicesOf(std::vector<TckPt> points) {
    std::stable_sort(points.begin(), points.end(),
                     [](const TckPt& a, const TckPt& b) { return a.lTime < b.lTime; });
    std::vector<std::vector<TckPt>> slices;
    for (const TckPt& point : points) {
        const std::int64_t time = point.lTime;
        if (slices.empty() || time - slices.back().back().lTime >= kSliceGap) slices.emplace_back();
        slices.back().push_back(point);
    }
    return slices;
}

std::optional<HeadImage> ReadHeadImage(std::string_view bytes) {
    if (bytes.size() != kHeadSize || !bytes.starts_with(kHeadText)) return std::nullopt;
    HeadImage head;
    const std::string_view name = bytes.substr(32, 32);
    head.name = std::string(name.substr(0, name.find('\0')));
    head.visible = NumberAt<std::uint32_t>(bytes, 64) != 0;
    head.color = NumberAt<std::uint32_t>(bytes, 68);
    return head;
}

// Source of the check: CRC-32 of IEEE 802.3. It covers the note from its own end on.
NoteState StateOfNote(std::string_view bytes) {
    constexpr std::size_t kBeforeNote = 8, kShortest = 58;
    if (bytes.empty()) return NoteState::None;
    if (bytes.size() < kBeforeNote) return NoteState::Damaged;
    const std::size_t length = NumberAt<std::uint32_t>(bytes, 4);
    if (length == 0) return NoteState::None;
    if (length < kShortest || length > bytes.size() - kBeforeNote) return NoteState::Damaged;
    const auto sum = Checksum<std::uint32_t, 0xedb88320>(bytes.substr(kBeforeNote, length));
    return sum == NumberAt<std::uint32_t>(bytes, 0) ? NoteState::Waiting : NoteState::Damaged;
}

}  // namespace host
