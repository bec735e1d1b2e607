#include "gpx/gpx_header.h"

#include <cstring>
#include <string>

#include "gpx/gpx_names.h"
#include "gpx/gpx_text.h"
#include "gpx/gpx_time.h"
#include "util/numbers.h"

namespace {

using gpx::Attribute;
using gpx::Child;
using gpx::Text;
using gpx::Value;
using gpx::XmlNode;

// A text of the metadata; one without a value leaves the field as it is.
template <std::size_t Room>
void ReadText(const XmlNode& parent, std::string_view name, char (&field)[Room]) {
    XmlNode* element = Child(parent, name);
    const std::string_view text = element == nullptr ? std::string_view() : Text(*element);
    if (!text.empty()) gpx::ToAnsi(text, field, Room - 1);
}

template <std::size_t Room>
void ReadAttribute(const XmlNode& element, std::string_view name, char (&field)[Room]) {
    if (const auto* attribute = Attribute(element, name)) gpx::ToAnsi(Value(*attribute), field, Room - 1);
}

// KEPT: compared as far as the document's version goes, so a document without one counts as 1.0, and so does
// "1". Documents of such versions are in use. Pinned by
// GpxMetadataImport.VersionThatIsABeginning_CountsAsThatVersion.
bool IsVersion(const char* stated, const char* version) {
    return std::strncmp(stated, version, std::strlen(stated)) == 0;
}

// KEPT: the parts are joined by these five characters, not by the sign they stand for, and the whole is
// converted twice; stored tracks carry such addresses. Pinned by
// GpxMetadataImport.EmailOfGpx11_IsJoinedLiterally.
void ReadEmailParts(const XmlNode& email, GpxMetadata& metadata) {
    char id[32] = {};
    char domain[64] = {};
    if (Attribute(email, gpx::kEmailId) == nullptr && Attribute(email, gpx::kEmailDomain) == nullptr) return;
    ReadAttribute(email, gpx::kEmailId, id);
    ReadAttribute(email, gpx::kEmailDomain, domain);
    gpx::ToAnsi(std::string(id) + "%s@%s" + domain, metadata.email, sizeof metadata.email - 1);
}

void ReadAuthor(const XmlNode& gpx, GpxMetadata& metadata) {
    char version[8] = {};
    ReadAttribute(gpx, gpx::kVersion, version);
    if (IsVersion(version, "1.0")) {
        ReadText(gpx, gpx::kAuthor, metadata.author);
        ReadText(gpx, gpx::kEmail, metadata.email);
    } else if (IsVersion(version, "1.1")) {
        if (const XmlNode* author = Child(gpx, gpx::kAuthor)) ReadText(*author, gpx::kName, metadata.author);
        if (const XmlNode* email = Child(gpx, gpx::kEmail)) ReadEmailParts(*email, metadata);
    }
}

void ReadBound(const XmlNode& bounds, std::string_view name, float& field) {
    if (const auto* attribute = Attribute(bounds, name))
        field = static_cast<float>(numbers::ParseReal(Value(*attribute)));
}

void ReadBounds(const XmlNode& bounds, GpxMetadata& metadata) {
    ReadBound(bounds, gpx::kMinLatitude, metadata.minlat);
    ReadBound(bounds, gpx::kMinLongitude, metadata.minlon);
    ReadBound(bounds, gpx::kMaxLatitude, metadata.maxlat);
    ReadBound(bounds, gpx::kMaxLongitude, metadata.maxlon);
}

}  // namespace

void gpx::ReadMetadata(const XmlNode& gpx, GpxMetadata& metadata) {
    ReadText(gpx, kName, metadata.name);
    ReadText(gpx, kDescription, metadata.desc);
    ReadAuthor(gpx, metadata);
    ReadText(gpx, kUrl, metadata.url);
    ReadText(gpx, kUrlName, metadata.urlname);
    ReadText(gpx, kTime, metadata.time);
    ReadText(gpx, kKeywords, metadata.keywords);
    if (const XmlNode* bounds = Child(gpx, kBounds)) ReadBounds(*bounds, metadata);
}

void gpx::ReadTrackHeader(const XmlNode& track, GpxTrackInfo& info) {
    constexpr int kLongestName = 32;
    if (XmlNode* name = Child(track, kName)) ToAnsi(Text(*name), info.name, kLongestName);
    if (XmlNode* number = Child(track, kNumber)) info.number = numbers::ParseInteger(Text(*number));

    const XmlNode* extensions = Child(track, kExtensions);
    const XmlNode& own = extensions == nullptr ? track : *extensions;
    if (XmlNode* color = Child(own, kColor))
        info.color = static_cast<std::uint32_t>(numbers::ParseInteger(Text(*color)));
    if (XmlNode* visible = Child(own, kVisible))
        info.visible = numbers::ParseInteger(Text(*visible)) != 0 ? 1 : 0;
    if (XmlNode* length = Child(own, kLength)) info.length = numbers::ParseReal(Text(*length));
    if (XmlNode* area = Child(own, kArea)) info.area = numbers::ParseReal(Text(*area));
    if (XmlNode* start = Child(own, kStartTime)) info.startTime = ReadTime(Text(*start));
    if (XmlNode* end = Child(own, kEndTime)) info.endTime = ReadTime(Text(*end));
}
