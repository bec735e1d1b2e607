// The points of a GPX file as text, read without the library: by a plain search, and by gpsbabel.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

struct GpxPoint {
    std::string latitude, longitude;  // as written, six decimals
    std::string time;                 // "2024-05-12T08:15:07Z"
    bool operator==(const GpxPoint&) const = default;
};

std::vector<GpxPoint> GpxPointsOf(const std::filesystem::path& file);

// Nothing when gpsbabel is not installed or does not read the file.
std::optional<std::vector<GpxPoint>> GpxPointsByGpsbabel(const std::filesystem::path& file);
bool HasGpsbabel();
