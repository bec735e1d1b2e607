// The commands of `qtrace` on a library of tracks: the real program, a device folder and a configuration of its
// own, and tracks whose files the test writes itself.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/device.h"
#include "tests/support/gpx_points.h"
#include "tests/support/process.h"

namespace host {

// A point of a test's track: so many metres north of 47 N 8 E, so many seconds into the morning.
struct Place {
    double metres = 0;
    long second = 0;
    double altitude = 400;
};

class LibraryProgram : public ::testing::Test {
 protected:
    LibraryProgram() {
        std::filesystem::create_directories(Tracks());
        std::filesystem::permissions(m_folder.Path(), std::filesystem::perms::all);
    }

    std::filesystem::path Tracks() const { return m_device / "UserData" / "Track"; }
    std::filesystem::path File(const std::string& name) const { return Tracks() / (name + ".gpx"); }
    std::filesystem::path Configuration() const {
        return m_folder.Path() / "config" / "qtrace" / "config.toml";
    }

    ProcessOptions Options() const {
        ProcessOptions options;
        options.environment = {{"XDG_CONFIG_HOME", (m_folder.Path() / "config").string()},
                               {"QTRACE_DEVICE", m_device.string()},
                               {"QTRACE_CONFIG", ""}};
        return options;
    }
    ProcessResult Run(std::vector<std::string> arguments) const { return Run(std::move(arguments), Options()); }
    static ProcessResult Run(std::vector<std::string> arguments, const ProcessOptions& options) {
        arguments.insert(arguments.begin(), QTRACE_PROGRAM);
        return RunProcess(arguments, options);
    }
    // Through the shell: `line` has the program as "$@".
    ProcessResult RunInShell(const std::string& line, const std::vector<std::string>& arguments) const {
        std::vector<std::string> command = {"sh", "-c", line, "sh", QTRACE_PROGRAM};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProcess(command, Options());
    }
    nlohmann::json Json(std::vector<std::string> arguments, int exitCode = 0) const {
        arguments.push_back("--json");
        const ProcessResult run = Run(std::move(arguments));
        EXPECT_EQ(run.exitCode, exitCode) << run.err;
        return nlohmann::json::parse(run.out, nullptr, false);
    }

    static std::string Time(long second) {
        const auto two = [](long value) { return (value < 10 ? "0" : "") + std::to_string(value); };
        const long all = 8 * 3600 + second;
        return "2024-05-12T" + two(all / 3600) + ':' + two(all / 60 % 60) + ':' + two(all % 60) + 'Z';
    }
    static std::string Point(const Place& place) {
        return "<trkpt lat=\"" + std::to_string(47 + place.metres / 111120) + "\" lon=\"8.000000\"><ele>" +
               std::to_string(place.altitude) + "</ele><time>" + Time(place.second) + "</time></trkpt>\n";
    }
    // As the library lays a track out; `color` is 0x00BBGGRR.
    static std::string Gpx(const std::string& name, const std::vector<Place>& places, long color = 0,
                           bool visible = true, const std::string& more = "") {
        std::string points;
        for (const Place& place : places) points += Point(place);
        return "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<gpx version=\"1.0\">\n" + more +
               "<trk>\n<name>" + name + "</name>\n<number>" + std::to_string(places.size()) +
               "</number>\n<extensions><color>" + std::to_string(color) + "</color><visible>" +
               (visible ? "1" : "0") + "</visible><length>" +
               std::to_string(std::max(places.back().metres - places.front().metres, 1.0)) +
               "</length><starttime>" + Time(places.front().second) + "</starttime><endtime>" +
               Time(places.back().second) + "</endtime></extensions>\n<trkseg>\n" + points +
               "</trkseg>\n</trk>\n</gpx>\n";
    }
    void AddTrack(const std::string& name, const std::vector<Place>& places = {{0, 0}, {100, 50}, {300, 150}},
                  long color = 0, bool visible = true) const {
        WriteFile(File(name), Gpx(name, places, color, visible));
    }

    // In the first place of the file where it stands.
    void Edit(const std::string& name, const std::string& from, const std::string& to) const {
        std::string text = TextOf(name);
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << text;
        WriteFile(File(name), text.replace(at, from.size(), to));
    }
    std::string TextOf(const std::string& name) const { return ReadFile(File(name)); }
    std::vector<GpxPoint> PointsOf(const std::string& name) const { return GpxPointsOf(File(name)); }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Tracks()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    // No file of the folder can be written or made any more, not even by the superuser's program.
    ProcessOptions AsNobodyInAReadOnlyFolder() const {
        for (const auto& entry : std::filesystem::directory_iterator(Tracks()))
            std::filesystem::permissions(entry, std::filesystem::perms(0444));
        std::filesystem::permissions(Tracks(), std::filesystem::perms(0555));
        ProcessOptions options = Options();
        options.asNobody = true;
        return options;
    }
    // Enough for what the program says, which the test reads from a file, and not for a track.
    ProcessOptions WithoutRoom() const {
        ProcessOptions options = Options();
        options.fileSizeLimit = 500;
        return options;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_device = m_folder.Path() / "device";
};

inline bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace host
