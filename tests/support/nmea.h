// NMEA 0183 sentences for tests, with their checksum.
#pragma once

#include <string>

// "$body*hh" and CR LF.
std::string NmeaLine(const std::string& body);
