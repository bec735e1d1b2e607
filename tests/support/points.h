// Points and lists of points for tests: making them, comparing them byte for byte, printing them.
// The bytes of a whole record stream: tests/track/track_fixture.h.
#pragma once

#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "tests/support/byte_string.h"
#include "track/point.h"
#include "util/je_allocator.h"

using Points = std::vector<TckPt, je_allocator<TckPt>>;

// A fix of a moving device, all further fields zero.
inline TckPt At(double latitude, double longitude, std::int32_t time = 0) {
    TckPt fix{};
    fix.dLatitude = latitude;
    fix.dLongitude = longitude;
    fix.dSpeed = 1.0;
    fix.lTime = time;
    return fix;
}

// The 48 bytes of a point in a file.
inline std::string PointBytes(const TckPt& fix) {
    ByteString bytes;
    bytes.F64(fix.dLatitude).F64(fix.dLongitude).F64(fix.dAltitude).F64(fix.dSpeed);
    bytes.I32(fix.lTime).F32(fix.fCourse);
    return bytes.Raw(std::string(reinterpret_cast<const char*>(fix.reserved), sizeof fix.reserved)).Bytes();
}

// A point each of whose 48 bytes is drawn, so that it need not be a fix at all.
inline TckPt AnyBytes(std::mt19937& random) {
    unsigned char bytes[sizeof(TckPt)];
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    TckPt fix;
    std::memcpy(&fix, bytes, sizeof fix);
    return fix;
}

inline double Between(double low, double high, std::mt19937& random) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

// `count` fixes anywhere within `reach` degrees of a place, at any times.
inline Points AnyRoute(std::size_t count, double latitude, double longitude, double reach,
                       std::mt19937& random) {
    Points route;
    for (std::size_t i = 0; i < count; ++i) {
        route.push_back(
            At(latitude + Between(-reach, reach, random), longitude + Between(-reach, reach, random)));
        route.back().lTime = static_cast<std::int32_t>(random());
    }
    return route;
}

inline bool operator==(const TckPt& a, const TckPt& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

inline void PrintTo(const TckPt& fix, std::ostream* out) {
    *out << "{lat " << fix.dLatitude << " lon " << fix.dLongitude << " alt " << fix.dAltitude << " speed "
         << fix.dSpeed << " time " << fix.lTime << " course " << fix.fCourse << "}";
}
