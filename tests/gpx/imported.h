// What an import made of a document, and how two of them are compared.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "gpx/gpx.h"
#include "platform/clock.h"
#include "tests/support/points.h"
#include "util/time.h"

// Copies a text to a zero-terminated field.
template <std::size_t Room>
void Put(char (&field)[Room], const std::string& text) {
    std::memset(field, 0, Room);
    text.copy(field, Room - 1);
}

// What an import made of a document. The points are in their own vector, info.points leads to it.
struct Imported {
    Imported() { info.points = &points; }
    Imported(const Imported&) = delete;
    Imported& operator=(const Imported&) = delete;

    bool isRead = false;
    int encoding = -1;
    GpxMetadata metadata{};
    GpxTrackInfo info{};
    Points points;
};

// An empty time means now; the two readers run at slightly different times.
inline void BlurNow(std::int32_t& time) {
    SYSTEMTIME clock{};
    platform::GetSystemTime(&clock);
    const auto now = static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(clock));
    if (std::llabs(static_cast<long long>(time) - now) < 100) time = 123456789;
}

inline void BlurNow(Imported& imported) {
    BlurNow(imported.info.startTime);
    BlurNow(imported.info.endTime);
    for (TckPt& point : imported.points) BlurNow(point.lTime);
}

inline std::string HeaderBytes(const GpxTrackInfo& info) {
    GpxTrackInfo copy;
    std::memset(&copy, 0, sizeof copy);
    std::memcpy(&copy, &info, sizeof copy);
    copy.points = nullptr;
    return {reinterpret_cast<const char*>(&copy), sizeof copy};
}
