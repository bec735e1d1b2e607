// What the two position sentences of NMEA 0183 say: RMC (date, time, position, speed, course) and GGA (time,
// altitude, dilution of precision). Framing and checksum: host/source/nmea_sentence.h. Numbers are read the
// same under every locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "qtrace.h"

namespace host {

enum class Reading {
    Good,
    NoFix,     // the receiver says itself that it has none
    NoDate,    // a fix before the receiver knows the date
    BadField,  // a field is missing, malformed or out of its range
};

// The time of day of a sentence [microseconds since midnight UTC]: what an RMC and its GGA have in common.
using TimeOfDay = std::int64_t;

struct Rmc {
    TimeOfDay timeOfDay = 0;
    TckPt fix{};  // dAltitude 0.0: an RMC has none. dSpeed [m/s] is exactly 0.0 when the receiver reports no
                  // speed.
};

struct Gga {
    TimeOfDay timeOfDay = 0;
    std::optional<double> altitude;  // [m] above mean sea level
    std::optional<double> hdop;      // horizontal dilution of precision; none when it is missing or malformed
};

// `body`: the sentence between "$" and "*". The result is filled only when the answer is Good.
// Two-digit years 80 to 99 are 1980 to 1999; dates beyond the 32 bits of TckPt::lTime are refused.
// Fractions of a second are cut from lTime and kept in timeOfDay.
Reading ReadRmc(std::string_view body, Rmc& rmc);
Reading ReadGga(std::string_view body, Gga& gga);

}  // namespace host
