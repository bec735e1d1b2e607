#include "gpx/gpx_point.h"

#include "gpx/gpx_names.h"
#include "gpx/gpx_time.h"
#include "util/numbers.h"

bool gpx::ReadPoint(const XmlNode& element, TckPt& point) {
    const auto* latitude = Attribute(element, kLatitude);
    const auto* longitude = Attribute(element, kLongitude);
    if (latitude == nullptr || longitude == nullptr) return false;
    point.dLatitude = numbers::ParseReal(Value(*latitude));
    point.dLongitude = numbers::ParseReal(Value(*longitude));
    if (XmlNode* elevation = Child(element, kElevation)) point.dAltitude = numbers::ParseReal(Text(*elevation));
    if (XmlNode* time = Child(element, kTime)) point.lTime = ReadTime(Text(*time));
    return true;
}
