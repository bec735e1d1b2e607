// A GPX document as a track. The other direction: gpx_writer.cpp. In order of work: gpx_source.h opens the
// text, gpx_outline.h reads the points, gpx_header.h reads the rest.
#include <optional>
#include <utility>

#include "gpx/gpx.h"
#include "gpx/gpx_header.h"
#include "gpx/gpx_names.h"
#include "gpx/gpx_outline.h"
#include "gpx/gpx_source.h"
#include "gpx/xml_node.h"
#include "util/kept_leak.h"
#include "util/paths.h"
#include "util/text.h"

namespace {

bool HasGpxExtension(const std::wstring& path) {
    std::wstring extension;
    GetFileSuffixName(path.substr(path.rfind(L'\\') + 1), extension);
    UpWString(extension);
    return extension == L"GPX";
}

// Whether its first trkseg has a trkpt.
bool HasPoint(const gpx::XmlNode* track) {
    const gpx::XmlNode* segment = track == nullptr ? nullptr : gpx::Child(*track, gpx::kSegment);
    return segment != nullptr && gpx::Child(*segment, gpx::kPoint) != nullptr;
}

void Append(gpx::Points&& read, gpx::Points& points) {
    if (points.empty())
        points = std::move(read);
    else
        points.insert(points.end(), read.begin(), read.end());
}

}  // namespace

bool CGPXTransmit::ImportGpx(const std::wstring& path, GpxTrackInfo* info) {
    return Import(path, info, Content::Whole);
}

bool CGPXTransmit::ImportGpxHead(const std::wstring& path, GpxTrackInfo* info) {
    return Import(path, info, Content::Head);
}

bool CGPXTransmit::ImportGpxPoints(const std::wstring& path, GpxTrackInfo* info) {
    return Import(path, info, Content::Points);
}

bool CGPXTransmit::Import(const std::wstring& path, GpxTrackInfo* info, Content wanted) {
    m_pTrackInfo = info;
    std::optional<gpx::TextWindow> text;
    bool isRead = false;
    try {
        if (!HasGpxExtension(path)) return false;
        text.emplace(gpx::LoadSource(path, m_iSourceEncoding));
        isRead = ReadDocument(*text, wanted);
    } catch (...) {
        // KEPT: the text of a document that is refused is never freed. Pinned by the leak checker, which
        // reports every other block that is lost.
        if (text) KeepLeaked(text->Release());
    }
    m_pDocument.reset();
    return isRead;
}

bool CGPXTransmit::ReadDocument(gpx::TextWindow& text, Content wanted) {
    auto pointsWanted = gpx::PointsWanted::None;
    if (wanted == Content::Whole) pointsWanted = gpx::PointsWanted::OfAllSegments;
    if (wanted == Content::Points) pointsWanted = gpx::PointsWanted::OfFirstSegment;
    gpx::Points points = gpx::TakeOutPoints(text, pointsWanted);
    m_pDocument = std::make_unique<gpx::XmlDocument>();
    m_pDocument->parse<rapidxml::parse_default>(text.Begin());

    const gpx::XmlNode* root = gpx::Child(*m_pDocument, gpx::kGpx);
    if (root == nullptr) return false;
    gpx::ReadMetadata(*root, m_metadata);
    const gpx::XmlNode* track = gpx::Child(*root, gpx::kTrack);
    if (wanted != Content::Whole && !HasPoint(track)) return false;
    if (wanted != Content::Points && track != nullptr) gpx::ReadTrackHeader(*track, *m_pTrackInfo);
    Append(std::move(points), *m_pTrackInfo->points);
    return true;
}
