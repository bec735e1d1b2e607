// A track as a GPX 1.0 document. The other direction: gpx_reader.cpp. How XML is printed: xml_printer.h.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "gpx/gpx.h"
#include "gpx/gpx_names.h"
#include "gpx/gpx_text.h"
#include "gpx/gpx_time.h"
#include "gpx/xml_printer.h"
#include "platform/file.h"
#include "util/text.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr double kSmallestMeasure = 1e-6;  // [m, m^2] a length or area up to this is not written

// Lengths, areas, altitudes and bounds are written in single precision, positions in double.
double InSinglePrecision(double value) { return static_cast<double>(static_cast<float>(value)); }

bool IsPlusZero(float value) { return std::bit_cast<std::uint32_t>(value) == 0; }
bool IsPlusZero(double value) { return std::bit_cast<std::uint64_t>(value) == 0; }

// The text of a document until it is handed over, a piece at a time.
class PieceOfText {
 public:
    static constexpr std::size_t kUsualSize = 1 << 18;  // small enough for the processor's caches

    PieceOfText(std::string& text, const platform::TakePiece& take) : m_text(text), m_take(take) {
        m_text = kByteOrderMark;
    }

    std::string& Text() { return m_text; }
    // Whether any more is wanted.
    bool HandOver() {
        const bool isMoreWanted = m_take(m_text);
        m_text.clear();
        return isMoreWanted;
    }
    bool HandOverWhenLong() { return m_text.size() < kUsualSize || HandOver(); }

 private:
    std::string& m_text;
    const platform::TakePiece& m_take;
};

class DocumentWriter {
 public:
    // `utf8` is scratch for one text.
    DocumentWriter(PieceOfText& piece, char (&utf8)[513]) : m_piece(piece), m_xml(piece.Text()), m_utf8(utf8) {}

    void Write(const GpxMetadata& metadata, const GpxTrackInfo& track);

 private:
    void Metadata(const GpxMetadata& metadata);
    void Bounds(const GpxMetadata& metadata);
    void Track(const GpxTrackInfo& track);
    void Extensions(const GpxTrackInfo& track);
    void Segment(const GpxTrackInfo& track);
    void Point(const TckPt& point);
    void Text(std::string_view name, const char* ansi);
    void Measure(std::string_view name, double value);
    void Time(std::string_view name, std::int32_t seconds);

    PieceOfText& m_piece;
    XmlPrinter m_xml;
    gpx::TimeWriter m_times;
    char (&m_utf8)[513];
};

void DocumentWriter::Write(const GpxMetadata& metadata, const GpxTrackInfo& track) {
    m_xml.Declaration();
    m_xml.Begin(gpx::kGpx);
    m_xml.Attribute(gpx::kVersion, "1.0");
    m_xml.Attribute(gpx::kCreator, gpx::kCreatorText);
    m_xml.Attribute("xmlns:xsi", gpx::kSchemaInstance);
    m_xml.Attribute("xmlns", gpx::kNamespace);
    m_xml.Attribute("xsi:schemaLocation", gpx::kSchemaLocation);
    Metadata(metadata);
    Track(track);
    m_xml.End(gpx::kGpx);
}

void DocumentWriter::Metadata(const GpxMetadata& metadata) {
    Text(gpx::kName, metadata.name);
    Text(gpx::kDescription, metadata.desc);
    Text(gpx::kAuthor, metadata.author);
    Text(gpx::kEmail, metadata.email);
    Text(gpx::kUrl, metadata.url);
    Text(gpx::kUrlName, metadata.urlname);
    Text(gpx::kTime, metadata.time);
    Text(gpx::kKeywords, metadata.keywords);
    Bounds(metadata);
}

void DocumentWriter::Bounds(const GpxMetadata& metadata) {
    if (IsPlusZero(metadata.minlat) && IsPlusZero(metadata.minlon) && IsPlusZero(metadata.maxlat) &&
        IsPlusZero(metadata.maxlon))
        return;
    m_xml.Begin(gpx::kBounds);
    m_xml.Attribute(gpx::kMinLatitude, metadata.minlat);
    m_xml.Attribute(gpx::kMinLongitude, metadata.minlon);
    m_xml.Attribute(gpx::kMaxLatitude, metadata.maxlat);
    m_xml.Attribute(gpx::kMaxLongitude, metadata.maxlon);
    m_xml.End(gpx::kBounds);
}

void DocumentWriter::Track(const GpxTrackInfo& track) {
    m_xml.Begin(gpx::kTrack);
    Text(gpx::kName, track.name);
    if (track.number != 0) m_xml.Element(gpx::kNumber, track.number);
    Extensions(track);
    Segment(track);
    m_xml.End(gpx::kTrack);
}

void DocumentWriter::Extensions(const GpxTrackInfo& track) {
    m_xml.Begin(gpx::kExtensions);
    // KEPT: signed, so colours from 0x80000000 on are negative numbers, as every stored track has them. Pinned
    // by GpxWriter.ColourWithTheHighestBit_IsNegative.
    m_xml.Element(gpx::kColor, static_cast<std::int32_t>(track.color));
    m_xml.Element(gpx::kVisible, track.visible);
    Measure(gpx::kLength, track.length);
    Measure(gpx::kArea, track.area);
    Time(gpx::kStartTime, track.startTime);
    Time(gpx::kEndTime, track.endTime);
    m_xml.End(gpx::kExtensions);
}

void DocumentWriter::Segment(const GpxTrackInfo& track) {
    m_xml.Begin(gpx::kSegment);
    for (const TckPt& point : *track.points) {
        Point(point);
        if (!m_piece.HandOverWhenLong()) break;
    }
    m_xml.End(gpx::kSegment);
}

void DocumentWriter::Point(const TckPt& point) {
    m_xml.Begin(gpx::kPoint);
    m_xml.Attribute(gpx::kLatitude, point.dLatitude);
    m_xml.Attribute(gpx::kLongitude, point.dLongitude);
    if (!IsPlusZero(point.dAltitude)) m_xml.Element(gpx::kElevation, InSinglePrecision(point.dAltitude));
    Time(gpx::kTime, point.lTime);
    m_xml.End(gpx::kPoint);
}

void DocumentWriter::Text(std::string_view name, const char* ansi) {
    if (*ansi == '\0') return;
    std::memset(m_utf8, 0, sizeof m_utf8);
    AnsicToUTF_8(ansi, m_utf8, sizeof m_utf8 - 1);
    m_xml.Element(name, std::string_view(m_utf8));
}

void DocumentWriter::Measure(std::string_view name, double value) {
    if (std::fabs(value) > kSmallestMeasure) m_xml.Element(name, InSinglePrecision(value));
}

void DocumentWriter::Time(std::string_view name, std::int32_t seconds) {
    if (seconds == 0) return;
    char text[gpx::kTimeRoom];
    const char* end = m_times.Write(seconds, text);
    m_xml.PlainElement(name, std::string_view(text, end));
}

}  // namespace

bool CGPXTransmit::ExportGpx(const std::wstring& path) {
    constexpr std::size_t kRoomBesidePoints = 4096;
    constexpr std::size_t kPointRoom = 130;  // a usual point takes 123 bytes; others only make the text grow
    try {
        std::string text;
        text.reserve(kRoomBesidePoints +
                     std::min(PieceOfText::kUsualSize, kPointRoom * m_pTrackInfo->points->size()));
        const auto document = [&](const platform::TakePiece& take) {
            PieceOfText piece(text, take);
            DocumentWriter(piece, m_szUtf8).Write(m_metadata, *m_pTrackInfo);
            text += '\n';  // the printer ends the document itself with one more line feed
            piece.HandOver();
        };
        // KEPT: a path that cannot be written is no failure; hosts take false for a lack of memory. Pinned by
        // GpxWriter.UnopenablePath_IsTrueAndLeavesNoFile.
        platform::ReplaceFileContent(gpx::PathInAnsi(path).c_str(), document);
        return true;
    } catch (...) {
        return false;
    }
}
