// Real recordings kept beside the project, not in it. A test that uses one copies it first and skips where it
// is missing:
//     const auto file = RecordedFile("nmea", "drive-sierra-nevada.nmea");
//     if (!file) GTEST_SKIP() << "no recorded data here";
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

std::optional<std::filesystem::path> RecordedFile(const std::string& folder, const std::string& name);

// All files of one folder ("nmea" or "gpx"), in name order; empty where the recordings are missing.
std::vector<std::filesystem::path> RecordedFiles(const std::string& folder);
