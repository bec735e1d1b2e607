// The words of a GPX document: element and attribute names and the addresses of GPX 1.0 and XML Schema, for the
// writer and the reader alike. What stands where: docs/formats/gpx.md.
#pragma once

#include <string_view>

namespace gpx {

inline constexpr std::string_view kGpx = "gpx";
inline constexpr std::string_view kVersion = "version";
inline constexpr std::string_view kCreator = "creator";

inline constexpr std::string_view kName = "name";
inline constexpr std::string_view kDescription = "desc";
inline constexpr std::string_view kAuthor = "author";
inline constexpr std::string_view kEmail = "email";
inline constexpr std::string_view kEmailId = "id";
inline constexpr std::string_view kEmailDomain = "domain";
inline constexpr std::string_view kUrl = "url";
inline constexpr std::string_view kUrlName = "urlname";
inline constexpr std::string_view kTime = "time";
inline constexpr std::string_view kKeywords = "keywords";
inline constexpr std::string_view kBounds = "bounds";
inline constexpr std::string_view kMinLatitude = "minlat";
inline constexpr std::string_view kMinLongitude = "minlon";
inline constexpr std::string_view kMaxLatitude = "maxlat";
inline constexpr std::string_view kMaxLongitude = "maxlon";

inline constexpr std::string_view kTrack = "trk";
inline constexpr std::string_view kNumber = "number";
inline constexpr std::string_view kExtensions = "extensions";
inline constexpr std::string_view kColor = "color";
inline constexpr std::string_view kVisible = "visible";
inline constexpr std::string_view kLength = "length";
inline constexpr std::string_view kArea = "area";
inline constexpr std::string_view kStartTime = "starttime";
inline constexpr std::string_view kEndTime = "endtime";
inline constexpr std::string_view kSegment = "trkseg";
inline constexpr std::string_view kPoint = "trkpt";
inline constexpr std::string_view kLatitude = "lat";
inline constexpr std::string_view kLongitude = "lon";
inline constexpr std::string_view kElevation = "ele";

inline constexpr std::string_view kWaypoint = "wpt";
inline constexpr std::string_view kRoute = "rte";
inline constexpr std::string_view kRoutePoint = "rtept";

inline constexpr std::string_view kCreatorText = "ExpertGPS 1.1 - http://www.topografix.com";
inline constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::string_view kNamespace = "http://www.topografix.com/GPX/1/0";
inline constexpr std::string_view kSchemaLocation =
    "http://www.topografix.com/GPX/1/0 http://www.topografix.com/GPX/1/0/gpx.xsd";

}  // namespace gpx
