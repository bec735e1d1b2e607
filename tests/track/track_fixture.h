// Tracks as tests see them: the cached header without its getters, and the record stream as bytes.
#pragma once

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "tests/support/machine.h"
#include "tests/support/points.h"
#include "track/track.h"

// What a track holds in its header, cached statistics included, as they stand.
struct TrackHeader {
    std::string name;
    std::uint32_t visible = 1;
    std::uint32_t color = 0x00FF0000;
    std::int32_t startTime = 0;
    std::int32_t endTime = 0;
    double length = 0.0;
    double area = 0.0;  // its magnitude
    bool operator==(const TrackHeader&) const = default;
};

inline void PrintTo(const TrackHeader& header, std::ostream* out) {
    *out << '{' << header.name << " visible " << header.visible << " color " << header.color << " times "
         << header.startTime << ".." << header.endTime << " length " << header.length << " area " << header.area
         << '}';
}

// The record stream's 96 header bytes.
inline std::string HeaderBytes(const TrackHeader& header) {
    ByteString bytes;
    bytes.Text("Qarvolent Trace H1.0", 32).Text(header.name, 32).U32(header.visible).U32(header.color);
    return bytes.I32(header.startTime).I32(header.endTime).F64(header.length).F64(header.area).Bytes();
}

inline std::string PointListBytes(const Points& pts) {
    ByteString bytes;
    bytes.I32(static_cast<std::int32_t>(pts.size()));
    for (const TckPt& fix : pts) bytes.Raw(PointBytes(fix));
    return bytes.Bytes();
}

inline std::string StreamBytes(const TrackHeader& header, const Points& pts) {
    return HeaderBytes(header) + PointListBytes(pts);
}

// A stream of its own, gone at the end.
class TemporaryStream {
 public:
    explicit TemporaryStream(const std::string& content = "") : m_stream(MakeTemporaryFile()) {
        if (m_stream == nullptr) throw std::runtime_error("no temporary file can be made");
        std::fwrite(content.data(), 1, content.size(), m_stream);
        std::rewind(m_stream);
    }
    ~TemporaryStream() { std::fclose(m_stream); }
    TemporaryStream(const TemporaryStream&) = delete;
    TemporaryStream& operator=(const TemporaryStream&) = delete;

    std::FILE* Get() const { return m_stream; }
    long Position() const { return std::ftell(m_stream); }
    void Seek(long offset) const { std::fseek(m_stream, offset, SEEK_SET); }
    std::string Bytes() const {
        std::fflush(m_stream);
        std::rewind(m_stream);
        std::string bytes;
        for (int byte = std::fgetc(m_stream); byte != EOF; byte = std::fgetc(m_stream))
            bytes += static_cast<char>(byte);
        return bytes;
    }

 private:
    std::FILE* m_stream;
};

// A track with its inside open to the test.
class OpenTrack : public CTrack {
 public:
    using CTrack::LoadHeadInfo;
    using CTrack::LoadPtListInfo;
    using CTrack::SaveHeadInfo;
    using CTrack::SavePtListInfo;

    const std::string& Title() const { return m_strTitle; }

    void Append(const Points& pts, bool incremental = false) {
        for (const TckPt& fix : pts) AppendPt(fix, incremental);
    }
    // The header as it stands: reading it computes nothing.
    TrackHeader Header() {
        TemporaryStream stream;
        SaveHeadInfo(stream.Get());
        return Decode(stream.Bytes());
    }
    // Puts the header in place of the track's, as a stored track brings it. The calculated flag stays.
    void TakeHeader(const TrackHeader& header) {
        TemporaryStream stream(HeaderBytes(header));
        if (!LoadHeadInfo(stream.Get())) throw std::logic_error("the header is not taken");
    }
    // The whole track as a record stream.
    std::string Stream() {
        TemporaryStream stream;
        Save(stream.Get());
        return stream.Bytes();
    }

 private:
    template <typename Field>
    static Field FieldAt(const std::string& bytes, std::size_t offset) {
        static_assert(std::is_trivially_copyable_v<Field>);
        Field field;
        std::memcpy(&field, bytes.data() + offset, sizeof field);
        return field;
    }
    static TrackHeader Decode(const std::string& bytes) {
        if (bytes.size() != 96) throw std::logic_error("a header has 96 bytes");
        TrackHeader header;
        header.name = std::string(bytes, 32, 32);
        header.name.erase(std::min(header.name.find('\0'), header.name.size()));
        header.visible = FieldAt<std::uint32_t>(bytes, 64);
        header.color = FieldAt<std::uint32_t>(bytes, 68);
        header.startTime = FieldAt<std::int32_t>(bytes, 72);
        header.endTime = FieldAt<std::int32_t>(bytes, 76);
        header.length = FieldAt<double>(bytes, 80);
        header.area = FieldAt<double>(bytes, 88);
        return header;
    }
};

inline OpenTrack TrackOf(const Points& pts) {
    OpenTrack track;
    track.Append(pts);
    return track;
}

// A track whose calculated flag is set while its cached statistics are `header`'s, true or not.
inline OpenTrack TrackRemembering(const Points& pts, const TrackHeader& header) {
    OpenTrack track = TrackOf(pts);
    track.Calculate(true);
    track.TakeHeader(header);
    return track;
}
