// The record stream of a track: a 96-byte header and the raw points. Byte layout:
// docs/formats/record-stream.md. The live recording's head file is such a header alone
// (record/log_track_files.cpp).
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/file.h"
#include "track/track.h"
#include "util/bytes.h"

std::string CTrack::g_strTrackFlag = "Qarvolent Trace H1.0";

namespace {

constexpr std::size_t kTextSize = 32;
constexpr std::size_t kHeaderSize = 96;
constexpr std::size_t kMostPoints = 10000;

using Header = std::array<unsigned char, kHeaderSize>;

void PutText(Header& header, std::size_t offset, const std::string& text) {
    std::memcpy(&header[offset], text.data(), std::min(text.size(), kTextSize));
}

// A field that cannot be read whole keeps what it held.
template <typename Field>
void ReadField(std::FILE* file, Field& field) {
    unsigned char raw[sizeof(Field)];
    if (std::fread(raw, sizeof raw, 1, file) == 1) field = bytes::LoadLittleEndian<Field>(raw);
}

void ReadField(std::FILE* file, std::int32_t& field) {
    auto value = static_cast<std::uint32_t>(field);
    ReadField(file, value);
    field = static_cast<std::int32_t>(value);
}

void ReadField(std::FILE* file, double& field) {
    auto value = std::bit_cast<std::uint64_t>(field);
    ReadField(file, value);
    field = std::bit_cast<double>(value);
}

std::string ReadText(std::FILE* file) {
    char text[kTextSize + 1] = {};
    std::fread(text, 1, kTextSize, file);
    return text;
}

}  // namespace

bool CTrack::Save(void* stream) {
    if (stream == nullptr) return false;
    SaveHeadInfo(stream);
    SavePtListInfo(stream);
    return true;
}

bool CTrack::Load(void* stream) {
    if (stream == nullptr || !LoadHeadInfo(stream)) return false;
    LoadPtListInfo(stream);
    return true;
}

void CTrack::SaveHeadInfo(void* stream) {
    if (stream == nullptr) return;
    Header header{};
    PutText(header, 0, g_strTrackFlag);
    PutText(header, 32, GetName());
    bytes::StoreLittleEndian(m_iVisible, &header[64]);
    bytes::StoreLittleEndian(m_ulColor, &header[68]);
    bytes::StoreLittleEndian(static_cast<std::uint32_t>(m_lStartTime), &header[72]);
    bytes::StoreLittleEndian(static_cast<std::uint32_t>(m_lEndTime), &header[76]);
    bytes::StoreLittleEndian(std::bit_cast<std::uint64_t>(m_dLength), &header[80]);
    bytes::StoreLittleEndian(std::bit_cast<std::uint64_t>(std::fabs(m_dArea)), &header[88]);

    auto* file = static_cast<std::FILE*>(stream);
    std::fseek(file, 0, SEEK_SET);
    std::fwrite(header.data(), header.size(), 1, file);
    platform::fflush(file);
}

bool CTrack::LoadHeadInfo(void* stream) {
    auto* file = static_cast<std::FILE*>(stream);
    if (ReadText(file) != g_strTrackFlag) return false;
    m_strName = ReadText(file);
    ReadField(file, m_iVisible);
    ReadField(file, m_ulColor);
    ReadField(file, m_lStartTime);
    ReadField(file, m_lEndTime);
    ReadField(file, m_dLength);
    ReadField(file, m_dArea);
    return true;
}

void CTrack::SavePtListInfo(void* stream) {
    const std::size_t count = m_vecPtLst.size();
    if (count > kMostPoints) return;
    auto* file = static_cast<std::FILE*>(stream);
    unsigned char field[4];
    bytes::StoreLittleEndian(static_cast<std::uint32_t>(count), field);
    std::fwrite(field, sizeof field, 1, file);
    if (count != 0) std::fwrite(m_vecPtLst.data(), sizeof(TckPt), count, file);
}

// Records that a short file lacks are read as zeros.
void CTrack::LoadPtListInfo(void* stream) {
    if (stream == nullptr) return;
    auto* file = static_cast<std::FILE*>(stream);
    std::int32_t count = 0;
    ReadField(file, count);
    m_vecPtLst.clear();
    if (count <= 0 || count > static_cast<std::int32_t>(kMostPoints)) return;
    m_vecPtLst.resize(static_cast<std::size_t>(count), TckPt{});
    std::fread(m_vecPtLst.data(), sizeof(TckPt), m_vecPtLst.size(), file);
}
