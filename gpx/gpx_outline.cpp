#include "gpx/gpx_outline.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include "gpx/gpx_names.h"
#include "gpx/gpx_point.h"
#include "gpx/plain_point.h"
#include "gpx/point_collector.h"
#include "gpx/xml_node.h"
#include "gpx/xml_scanner.h"

namespace {

// The parser calls itself for each level, and no GPX document has a dozen.
constexpr std::size_t kDeepest = 256;

// What is no point becomes a tree of about 100 bytes a piece, and as much again for its text, however short. A
// document of a thousand tracks has some ten thousand such pieces.
constexpr std::size_t kMostPieces = 500'000;

constexpr std::size_t kLongestPlainPoint =
    gpx::TextWindow::kPiece / 16;  // [bytes] the text is read so far ahead

// What an element is, as far as points are concerned. Those of the first trk are read, others only taken out.
enum class Place {
    Document,
    Gpx,
    Track,
    Segment,
    Point,
    OtherTrack,
    OtherSegment,
    Route,
    OtherPoint,
    Elsewhere
};

struct Step {
    Place from;
    std::string_view name;
    Place to;
};

constexpr Step kSteps[] = {
    {Place::Document, gpx::kGpx, Place::Gpx},
    {Place::Gpx, gpx::kTrack, Place::Track},
    {Place::Gpx, gpx::kRoute, Place::Route},
    {Place::Gpx, gpx::kWaypoint, Place::OtherPoint},
    {Place::Track, gpx::kSegment, Place::Segment},
    {Place::Segment, gpx::kPoint, Place::Point},
    {Place::OtherTrack, gpx::kSegment, Place::OtherSegment},
    {Place::OtherSegment, gpx::kPoint, Place::OtherPoint},
    {Place::Route, gpx::kRoutePoint, Place::OtherPoint},
};

Place Follow(Place from, std::string_view name) {
    for (const Step& step : kSteps)
        if (step.from == from && step.name == name) return step.to;
    return Place::Elsewhere;
}

constexpr bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

bool IsPoint(Place place) { return place == Place::Point || place == Place::OtherPoint; }

class OutlineMaker {
 public:
    OutlineMaker(gpx::TextWindow& text, gpx::PointsWanted wanted)
        : m_text(text),
          m_scanner(text.Begin(), text.End()),
          m_outlineEnd(text.Begin()),
          m_rest(text.Begin()),
          m_wanted(wanted),
          m_points(text.ExpectedSize()) {}

    gpx::Points Run();

 private:
    Markup Next();
    Markup Scan();
    void LookAhead();
    std::size_t Ahead() const { return static_cast<std::size_t>(m_scanner.TextEnd() - m_scanner.At()); }
    void ReadOn(std::size_t ahead);
    void Enter(const Markup& tag);
    void Leave(const Markup& tag);
    Place PlaceOf(std::string_view name);
    void BeginSegment();
    void TakeOutPlainPoints();
    std::size_t ReadPlainPoint(Place place, const char* begin);
    void TakeOut(Place place, char* begin, char* end);
    void Parse(Place place, char* begin, char* end);
    bool IsWanted(Place place) const;
    void Keep(std::string_view part);

    gpx::TextWindow& m_text;
    XmlScanner m_scanner;
    char* m_outlineEnd;  // the outline grows over the text that has been scanned
    char* m_rest;        // of the text: neither in the outline yet nor taken out
    gpx::PointsWanted m_wanted;

    std::array<Place, kDeepest + 1> m_places{Place::Document};  // from the document down to the element entered
    std::size_t m_depth = 0;
    bool m_hasGpx = false;
    bool m_hasTrack = false;
    int m_segments = 0;
    bool m_isSegmentEmpty = true;
    std::ptrdiff_t m_pointBegin = 0;  // from the rest on
    std::size_t m_piecesBeforeMarkup = 0;
    std::size_t m_piecesBeforePoint = 0;
    std::size_t m_piecesOfPoints = 0;  // of those taken out

    // On the heap: it brings 64 KiB of its own.
    std::unique_ptr<gpx::XmlDocument> m_parsed = std::make_unique<gpx::XmlDocument>();
    gpx::PlainPointReader m_plainPoints;
    TckPt m_point{};
    gpx::PointCollector m_points;
};

gpx::Points OutlineMaker::Run() {
    Markup markup = Next();
    for (; markup.kind != MarkupKind::None; markup = Next()) {
        if (markup.kind == MarkupKind::StartTag || markup.kind == MarkupKind::EmptyTag) Enter(markup);
        if (markup.kind == MarkupKind::EndTag || markup.kind == MarkupKind::EmptyTag) Leave(markup);
        TakeOutPlainPoints();
    }
    Keep({m_rest, markup.end});
    m_text.EndAt(m_outlineEnd);
    return m_points.Take();
}

Markup OutlineMaker::Next() {
    LookAhead();
    m_piecesBeforeMarkup = m_scanner.Pieces();
    const Markup markup = Scan();
    if (m_scanner.Pieces() - m_piecesOfPoints > kMostPieces)
        throw rapidxml::parse_error("too many elements that are no points", markup.begin);
    return markup;
}

// A markup may break off where the text has been read to: then twice as much is read, and it is looked at anew.
Markup OutlineMaker::Scan() {
    for (std::size_t ahead = 2 * std::max(m_text.Piece(), Ahead()); !m_text.IsWhole(); ahead *= 2) {
        const XmlScanner before = m_scanner;
        try {
            const Markup markup = m_scanner.Next();
            if (markup.kind != MarkupKind::None) return markup;
        } catch (const rapidxml::parse_error& error) {
            if (error.where<char>() != m_scanner.TextEnd()) throw;
        }
        m_scanner = before;
        ReadOn(ahead);
    }
    return m_scanner.Next();
}

// So far that a plain point does not break off.
void OutlineMaker::LookAhead() {
    if (Ahead() < m_text.Piece() / 16 && !m_text.IsWhole()) ReadOn(m_text.Piece());
}

// What has been taken out makes room.
void OutlineMaker::ReadOn(std::size_t ahead) {
    const std::ptrdiff_t outline = m_outlineEnd - m_text.Begin();
    const std::ptrdiff_t scanned = m_scanner.At() - m_rest;
    m_text.ReadOn(m_outlineEnd, m_rest, static_cast<std::size_t>(scanned) + ahead);
    m_outlineEnd = m_rest = m_text.Begin() + outline;
    m_scanner.GoOnIn(m_rest + scanned, m_text.End());
}

void OutlineMaker::Enter(const Markup& tag) {
    if (m_depth == kDeepest) throw rapidxml::parse_error("nested too deep", tag.begin);
    const Place place = PlaceOf(tag.name);
    m_places[++m_depth] = place;
    if (place == Place::Segment) BeginSegment();
    if (!IsPoint(place)) return;
    m_pointBegin = tag.begin - m_rest;
    m_piecesBeforePoint = m_piecesBeforeMarkup;
}

void OutlineMaker::Leave(const Markup& tag) {
    if (m_depth == 0) throw rapidxml::parse_error("end tag without start tag", tag.begin);
    const Place place = m_places[m_depth--];
    if (!IsPoint(place)) return;
    Parse(place, m_rest + m_pointBegin, tag.end);
    TakeOut(place, m_rest + m_pointBegin, tag.end);
    m_piecesOfPoints += m_scanner.Pieces() - m_piecesBeforePoint;
}

// Of an element in the one entered last. Only the first gpx of a document, and its first trk, count as such.
Place OutlineMaker::PlaceOf(std::string_view name) {
    const Place place = Follow(m_places[m_depth], name);
    if (place == Place::Gpx && std::exchange(m_hasGpx, true)) return Place::Elsewhere;
    if (place == Place::Track && std::exchange(m_hasTrack, true)) return Place::OtherTrack;
    return place;
}

// KEPT: the record is cleared once a segment, not once a point, so a point takes over what it does not state
// from the one before it; tracks were always read so. Pinned by GpxPoints.WithoutElevation_TakesTheLastOne.
void OutlineMaker::BeginSegment() {
    m_point = TckPt{};
    ++m_segments;
    m_isSegmentEmpty = true;
}

// As many as follow, and the blanks between them; what is left of the first keeps the text on both sides apart.
// The rest is for the scanner and the parser.
void OutlineMaker::TakeOutPlainPoints() {
    const Place place = Follow(m_places[m_depth], gpx::kPoint);
    if (!IsPoint(place)) return;
    for (bool isFirst = true;; isFirst = false) {
        LookAhead();
        char* begin = m_scanner.At();
        while (IsBlank(*begin)) ++begin;
        const std::size_t size = ReadPlainPoint(place, begin);
        if (size == 0) return;
        if (isFirst) TakeOut(place, begin, begin + size);
        m_rest = begin + size;
        m_scanner.GoOnAt(m_rest);
    }
}

// Returns the bytes it takes; 0 when there is none, or one so long that its elements have to be counted.
std::size_t OutlineMaker::ReadPlainPoint(Place place, const char* begin) {
    const TckPt before = m_point;
    const bool isWanted = IsWanted(place);
    const std::size_t size =
        isWanted ? m_plainPoints.Read(begin, m_point) : m_plainPoints.Measure(begin, m_scanner.TextEnd());
    if (size > kLongestPlainPoint) {
        m_point = before;
        return 0;
    }
    if (size != 0 && isWanted) m_points.Add(m_point, m_text.PositionOf(begin + size));
    return size;
}

// What is left in its place keeps the text on both sides apart, and shows that the segment has a point.
void OutlineMaker::TakeOut(Place place, char* begin, char* end) {
    Keep({m_rest, begin});
    const bool isFirst = place == Place::Point && std::exchange(m_isSegmentEmpty, false);
    Keep(isFirst ? "<trkpt/>" : " ");
    m_rest = end;
}

// Points that are not wanted are parsed too: a document with an error anywhere is refused.
void OutlineMaker::Parse(Place place, char* begin, char* end) {
    const char behind = std::exchange(*end, '\0');
    m_parsed->parse<rapidxml::parse_default>(begin);
    if (IsWanted(place) && gpx::ReadPoint(*m_parsed->first_node(), m_point))
        m_points.Add(m_point, m_text.PositionOf(end));
    m_parsed->clear();
    *end = behind;
}

bool OutlineMaker::IsWanted(Place place) const {
    if (place != Place::Point) return false;
    return m_wanted == gpx::PointsWanted::OfAllSegments ||
           (m_wanted == gpx::PointsWanted::OfFirstSegment && m_segments == 1);
}

void OutlineMaker::Keep(std::string_view part) {
    std::memmove(m_outlineEnd, part.data(), part.size());
    m_outlineEnd += part.size();
}

}  // namespace

gpx::Points gpx::TakeOutPoints(TextWindow& text, PointsWanted wanted) {
    return OutlineMaker(text, wanted).Run();
}
