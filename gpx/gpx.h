// CGPXTransmit: one track, as a header record and a list of points, to and from a GPX document on disk.
// Inner to the library; tracks use it through CTrack::Save and Load, handles through their header.
// The document's layout, byte for byte: docs/formats/gpx.md. Writing: gpx_writer.cpp. Reading: gpx_reader.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "track/point.h"
#include "util/je_allocator.h"

namespace rapidxml {
template <class Ch>
class xml_document;
}
namespace gpx {
class TextWindow;
}

// The document's metadata. Texts are zero-terminated, in the ANSI code page, at most 64 bytes long; empty ones
// are not written. Copied as one block.
struct GpxMetadata {
    char name[65];
    char desc[65];
    char author[65];
    char email[65];
    char url[65];
    char urlname[65];
    char time[65];
    char keywords[65];
    float minlat;  // [deg] the bounds are written unless all four are +0.0
    float minlon;
    float maxlat;
    float maxlon;
};
static_assert(sizeof(GpxMetadata) == 536);

// The track's header, and where its points are. Owned by the caller; it and the points must outlive the call.
struct GpxTrackInfo {
    char name[36];           // zero-terminated, ANSI code page, at most 32 bytes
    std::int32_t number;     // tracks put their point count here
    std::uint32_t color;     // 0x00BBGGRR
    std::int32_t visible;    // 0 or 1
    double length;           // [m]
    double area;             // [m^2] not negative
    std::int32_t startTime;  // [s] since 1970, 0 = not known
    std::int32_t endTime;
    std::vector<TckPt, je_allocator<TckPt>>* points;
};

// Not to be copied; one thread at a time. No exception leaves this class.
class CGPXTransmit {
 public:
    CGPXTransmit();
    virtual ~CGPXTransmit();
    CGPXTransmit(const CGPXTransmit&) = delete;
    CGPXTransmit& operator=(const CGPXTransmit&) = delete;

    void SetMetadata(const GpxMetadata* md);  // copies it; non-null
    void SetTrackInfo(GpxTrackInfo* info);    // kept by reference, for ExportGpx
    const GpxMetadata& Metadata() const { return m_metadata; }
    std::int32_t SourceEncoding() const { return m_iSourceEncoding; }

    // Writes the document in one step: the file holds the old document or the new, never a part. True also when
    // the path cannot be written (then the file, if there is one, is as it was); false when the document could
    // not be built.
    bool ExportGpx(const std::wstring& path);

    // The whole first trk, all its segments; true when the document has a gpx element.
    // Points are appended to info->points, which the caller empties first.
    bool ImportGpx(const std::wstring& path, GpxTrackInfo* info);
    // The header of the first trk; false unless its first trkseg has a trkpt.
    bool ImportGpxHead(const std::wstring& path, GpxTrackInfo* info);
    // The points of the first trkseg only; false unless it has a trkpt.
    bool ImportGpxPoints(const std::wstring& path, GpxTrackInfo* info);

 private:
    enum class Content { Whole, Head, Points };
    bool Import(const std::wstring& path, GpxTrackInfo* info, Content wanted);
    bool ReadDocument(gpx::TextWindow& text, Content wanted);

    GpxMetadata m_metadata;
    std::int32_t m_iSourceEncoding;  // of the last import: 0 ANSI code page, 1 UTF-8, 2 UTF-16
    std::unique_ptr<rapidxml::xml_document<char>> m_pDocument;  // during an import
    GpxTrackInfo* m_pTrackInfo;
    char m_szUtf8[513];  // scratch for one text
};
