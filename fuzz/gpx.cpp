// A GPX file by strangers, read in all three ways, each as a plain parse of the whole tree reads it; what was
// read as a whole track is written and read again.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "fuzz/device_in_memory.h"
#include "gpx/gpx.h"
#include "tests/gpx/imported.h"
#include "tests/gpx/reference_reader.h"

namespace {

// Whether the text is parsed as it is and not too deep for the library; another is not compared.
bool IsParsedAsItIs(std::string_view text) {
    constexpr std::size_t kDeepest = 256, kLookedAt = 256;
    const std::string_view mark = text.substr(0, 2);
    if (mark == "\xFF\xFE" || mark == "\xFE\xFF") return false;
    for (std::size_t at = 0; at < std::min(text.size(), kLookedAt); ++at)
        if (text[at] == '\n' && (at == 0 || text[at - 1] != '\r')) return false;
    std::size_t endTags = 0;
    for (std::size_t at = 0; (at = text.find("</", at)) != text.npos; ++at) ++endTags;
    return endTags <= kDeepest;
}

// What the text nan(1) tells between its brackets is not compared.
template <typename Real>
void BlurNoNumber(Real& value) {
    if (std::isnan(value)) value = std::numeric_limits<Real>::quiet_NaN();
}

void Blur(Imported& imported) {
    BlurNow(imported);
    for (TckPt& point : imported.points)
        for (double* value : {&point.dLatitude, &point.dLongitude, &point.dAltitude}) BlurNoNumber(*value);
    for (double* value : {&imported.info.length, &imported.info.area}) BlurNoNumber(*value);
    GpxMetadata& metadata = imported.metadata;
    for (float* value : {&metadata.minlat, &metadata.minlon, &metadata.maxlat, &metadata.maxlon})
        BlurNoNumber(*value);
}

void RequireSame(Imported& actual, Imported& expected) {
    Blur(actual);
    Blur(expected);
    fuzz::Require(actual.isRead == expected.isRead);
    fuzz::Require(std::memcmp(&actual.metadata, &expected.metadata, sizeof(GpxMetadata)) == 0);
    fuzz::Require(HeaderBytes(actual.info) == HeaderBytes(expected.info));
    fuzz::Require(actual.points == expected.points);
}

using ImportWay = bool (CGPXTransmit::*)(const std::wstring&, GpxTrackInfo*);

void Import(ImportWay way, Imported& imported) {
    CGPXTransmit transmit;
    transmit.SetMetadata(&imported.metadata);
    imported.isRead = (transmit.*way)(L"\\Track\\input.gpx", &imported.info);
    imported.metadata = transmit.Metadata();
}

void ReadBothWays(const std::string& text, ImportWay way, ReferenceReader::Content wanted, Imported& actual) {
    Import(way, actual);
    if (!IsParsedAsItIs(text)) return;
    Imported expected;
    ReferenceReader().Read(text.substr(0, text.find('\0')), wanted, expected);
    RequireSame(actual, expected);
}

void WriteAndReadAgain(Imported& track) {
    GpxMetadata metadata{};
    CGPXTransmit writer;
    writer.SetMetadata(&metadata);
    writer.SetTrackInfo(&track.info);
    fuzz::Require(writer.ExportGpx(L"\\Track\\again.gpx"));
    Imported again;
    fuzz::Require(CGPXTransmit().ImportGpx(L"\\Track\\again.gpx", &again.info));
    fuzz::Require(again.points.size() == track.points.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Content = ReferenceReader::Content;
    const std::string text(reinterpret_cast<const char*>(data), size);
    fuzz::Device().Write("Track/input.gpx", text);
    Imported whole, head, points;
    ReadBothWays(text, &CGPXTransmit::ImportGpx, Content::Whole, whole);
    ReadBothWays(text, &CGPXTransmit::ImportGpxHead, Content::Head, head);
    ReadBothWays(text, &CGPXTransmit::ImportGpxPoints, Content::FirstPoints, points);
    if (whole.isRead) fuzz::Require(points.points.size() <= whole.points.size());
    if (whole.isRead) WriteAndReadAgain(whole);
    return 0;
}
