// The live recording's point file as its bytes say, and the fixes that tests feed to the manager.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/device.h"
#include "track/point.h"

struct LogOnDisk {
    unsigned start = 0;
    unsigned count = 0;
    std::vector<TckPt> slots;

    explicit LogOnDisk(const std::filesystem::path& file) {
        const std::string bytes = ReadFile(file);
        const auto word = [&](std::size_t at) {
            return static_cast<unsigned>(static_cast<unsigned char>(bytes.at(at)) |
                                         static_cast<unsigned char>(bytes.at(at + 1)) << 8);
        };
        start = word(0);
        count = word(2);
        for (std::size_t at = 4; at + sizeof(TckPt) <= bytes.size(); at += sizeof(TckPt)) {
            TckPt point;
            std::memcpy(static_cast<void*>(&point), bytes.data() + at, sizeof point);
            slots.push_back(point);
        }
    }

    std::vector<std::int32_t> Times() const {
        std::vector<std::int32_t> times;
        for (const TckPt& point : slots) times.push_back(point.lTime);
        return times;
    }
};

constexpr std::int32_t kRideStart = 1400000000;  // [s]

// The i-th fix of a ride due north, one each second, 10 m/s by its own speed. All 40 bytes that are stored of
// it differ from fix to fix.
inline TckPt RideFix(int i) {
    TckPt fix{};
    fix.dLatitude = 10.0 + i * 0.0001;
    fix.dLongitude = 20.0;
    fix.dAltitude = 100.0 + i;
    fix.dSpeed = 10.0;
    fix.lTime = kRideStart + i;
    fix.fCourse = static_cast<float>(i);
    return fix;
}

inline std::vector<std::int32_t> RideTimes(int first, int end) {
    std::vector<std::int32_t> times;
    for (int i = first; i < end; ++i) times.push_back(kRideStart + i);
    return times;
}
