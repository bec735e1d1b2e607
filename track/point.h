// TckPt: one recorded GPS fix, as it lies in memory and in every file of ours. It builds on nothing.
// What is computed on points: track/geodesy.h. Lists of points: track/track.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

// A plain record of 48 bytes, copied and stored as raw bytes. Clear it before filling it: TckPt fix{};
struct TckPt {
    double dLatitude;    // [deg] north positive
    double dLongitude;   // [deg] east positive
    double dAltitude;    // [m]
    double dSpeed;       // [m/s] over ground; exactly 0.0 means standing still
    std::int32_t lTime;  // [s] since 1970-01-01 00:00; 0 means no time
    float fCourse;       // [deg] direction of travel
    // Further fix data, carried along. The live recording keeps a check sequence in the first two bytes.
    unsigned char reserved[8];
};

static_assert(sizeof(TckPt) == 48 && std::is_trivially_copyable<TckPt>::value, "stored as 48 raw bytes");
static_assert(offsetof(TckPt, dLatitude) == 0 && offsetof(TckPt, dLongitude) == 8, "position first");
static_assert(offsetof(TckPt, dAltitude) == 16 && offsetof(TckPt, dSpeed) == 24, "then altitude and speed");
static_assert(offsetof(TckPt, lTime) == 32 && offsetof(TckPt, fCourse) == 36, "then time and course");
static_assert(offsetof(TckPt, reserved) == 40, "the check sequence sits in bytes 40 and 41");
